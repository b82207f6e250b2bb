// What checking a file has found.
#pragma once

#include <vrelio/foundation/integers.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Vrel::tool {

/// One thing at one place.
struct Finding {
  u64 position;              ///< in bytes from the start of the file
  std::optional<u64> stack;  ///< its number in the chain; none for the file itself
  std::string what;
};

/// The first findings of a file, and how many there were: a broken file can have any number.
class FindingList {
 public:
  static constexpr std::size_t most_kept = 1000;

  void add(Finding finding);
  const std::vector<Finding>& kept() const { return kept_; }
  u64 count() const { return count_; }

 private:
  std::vector<Finding> kept_;
  u64 count_ = 0;
};

/// All that was found in one file.
struct VerifyReport {
  FindingList findings;  ///< what makes something unreadable, or other than it was written
  FindingList notes;     ///< what is unusual, and harms no reader
  u64 stacks = 0;        ///< stacks that were met
  std::vector<u64> readable_stacks;  ///< numbers of those that can be read whole
};

/// For people: a line per finding and per note, and what can be read.
std::string to_text(const std::string& file, const VerifyReport& report);
/// For programs: one JSON object in a line.
std::string to_json(const std::string& file, const VerifyReport& report);

}  // namespace Vrel::tool
