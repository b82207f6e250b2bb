// The stacks of a file that may be damaged, link by link.
#pragma once

#include <vrelio/container/records.h>
#include <vrelio/file/file.h>
#include <vrelio/foundation/error.h>

#include <optional>
#include <string>

#include "lib/file_extents.h"

namespace Vrel::tool {

/// A stack that a link leads to.
struct WalkedStack {
  StackRecord record;              ///< what could be read of it
  u64 index = 0;                   ///< its number in the chain
  u64 end = 0;                     ///< behind its last section, or where reading stopped
  std::optional<VrelError> error;  ///< what is wrong with it

  /// Whether header, name and description could be read.
  bool has_header() const { return record.data_position != 0; }
  /// Behind the data area.
  u64 data_end() const { return record.data_position + record.header.data_length; }
};

/// A link that cannot be followed.
struct BrokenLink {
  u64 position;      ///< of the link
  std::string what;  ///< what is wrong with it
};

/// The size of a file, whose position stays.
u64 size_of(VFile& file);

/// Reads the stack at a position; what is wrong with it is told in the result.
/// \throws VrelError where the system refuses to read, and std::bad_alloc.
WalkedStack read_stack_at(VFile& file, u64 position);

/// Follows the links and, where a stack's header can be read, goes on behind a damaged one.
///
/// Of a file whose stacks lie over one another, or which is broken in many places, not all is looked
/// at, so that the work stays in proportion to the file.
class ChainWalk {
 public:
  /// \param start    what stands in front of the stacks.
  /// \param extents  has the rest of the file that is known; each stack adds its own.
  ChainWalk(VFile& file, const FileRecord& start, FileExtents& extents);

  /// The next stack; none at the end of the chain and behind a broken link.
  std::optional<WalkedStack> next();
  /// Why the chain ended, unless it came to its end.
  const std::optional<BrokenLink>& broken_link() const { return broken_link_; }

 private:
  std::optional<std::string> fault_of_link() const;
  void take_extent(const WalkedStack& stack);
  void pay_for(const WalkedStack& stack);

  VFile& file_;
  FileExtents& extents_;
  u64 file_size_;
  u64 budget_;
  u64 link_position_;
  u64 target_;
  u64 index_ = 0;
  std::optional<BrokenLink> broken_link_;
};

}  // namespace Vrel::tool
