#include "lib/verify_file.h"

#include <vrelio/container/chain.h>

#include <algorithm>

#include "lib/chain_walk.h"
#include "lib/unlinked_stacks.h"
#include "lib/verify_samples.h"
#include "lib/verify_texts.h"

namespace Vrel::tool {

namespace {

constexpr u64 format_version_offset = 10;
constexpr u64 description_length_offset = 22;

class FileCheck {
 public:
  FileCheck(VFile& file, ProgressBar& progress)
      : file_(file), progress_(progress), file_size_(size_of(file)) {}

  VerifyReport run();

 private:
  void fault(u64 position, const std::string& what, std::optional<u64> stack = std::nullopt) {
    report_.findings.add({position, stack, what});
  }
  void note(u64 position, const std::string& what, std::optional<u64> stack = std::nullopt) {
    report_.notes.add({position, stack, what});
  }

  bool read_start();
  void check_start();
  void check_dictionary();
  void check_ome_text();
  void check_stacks();
  void check_stack(const WalkedStack& stack);
  void check_structure(const WalkedStack& stack);
  void check_data(const WalkedStack& stack);
  void check_sections(const WalkedStack& stack);
  void check_unlinked();
  void check_gaps();
  static u64 place_of_error(const WalkedStack& stack);

  VFile& file_;
  ProgressBar& progress_;
  u64 file_size_;
  FileRecord start_;
  FileExtents extents_;
  VerifyReport report_;
  bool is_reachable_ = true;
};

VerifyReport FileCheck::run() {
  if (!read_start()) return report_;
  check_start();
  check_stacks();
  check_unlinked();
  check_gaps();
  return report_;
}

// Only what has the magic of a file is one that can be broken.
bool FileCheck::read_start() {
  try {
    read_file_start(file_, start_);
    return true;
  } catch (const VrelError& error) {
    const bool is_ours = start_.header.description_length != 0;
    if (!is_ours || error.get_oserr_id() > 0) throw;
    fault(start_.file_position + description_length_offset, error.get_msg());
    return false;
  }
}

void FileCheck::check_start() {
  const std::uint32_t version = start_.header.format_version;
  if (version == 0 || version > newest_file_version) {
    fault(format_version_offset, "The format version " + std::to_string(version) + " is not known");
  }
  extents_.add({0, start_.header_end});
  if (version > 1) check_dictionary();
}

void FileCheck::check_dictionary() {
  const u64 position = start_.dictionary_position;
  const u64 field = start_.dictionary_field_position;
  if (position == 0) return fault(field, "The file was not closed: it has no dictionary");
  if (position >= file_size_ || position < start_.header_end) {
    return fault(field, "The position of the dictionary, " + std::to_string(position) +
                            ", is none behind the header and inside the file");
  }
  if (!start_.has_dictionary) return fault(position, "The dictionary is cut off or damaged");
  extents_.add({position, start_.dictionary_end});
  const u64 size = start_.dictionary_end - position;
  if (size != encoded_size(start_.dictionary)) {
    note(position, "The dictionary has a key more than once");
  }
  check_ome_text();
}

void FileCheck::check_ome_text() {
  const auto entry = start_.dictionary.find("ome_xml");
  if (entry == start_.dictionary.end()) return;
  if (const std::optional<XmlFault> fault_in_text = find_xml_fault(entry->second)) {
    fault(start_.dictionary_position, "The OME metadata is no XML from its byte " +
                                          std::to_string(fault_in_text->offset) +
                                          " on: " + fault_in_text->what);
  }
}

void FileCheck::check_stacks() {
  ChainWalk walk(file_, start_, extents_);
  while (const std::optional<WalkedStack> stack = walk.next()) {
    ++report_.stacks;
    check_stack(*stack);
  }
  if (walk.broken_link()) fault(walk.broken_link()->position, walk.broken_link()->what);
}

void FileCheck::check_stack(const WalkedStack& stack) {
  const u64 before = report_.findings.count();
  check_structure(stack);
  check_data(stack);
  const bool is_sound = report_.findings.count() == before;
  if (is_reachable_ && is_sound) report_.readable_stacks.push_back(stack.index);
  if (stack.error) is_reachable_ = false;
}

u64 FileCheck::place_of_error(const WalkedStack& stack) {
  if (!stack.has_header()) return stack.record.stack_position;
  const u64 footer = stack.data_end();
  if (footer < stack.record.data_position) return stack.record.data_position;
  const bool is_in_sections = stack.end > footer && stack.end - footer > stack_footer_size;
  return is_in_sections ? stack.end : footer;
}

void FileCheck::check_structure(const WalkedStack& stack) {
  const StackRecord& record = stack.record;
  if (stack.error) return fault(place_of_error(stack), stack.error->get_msg(), stack.index);
  if (stack.data_end() > file_size_) {
    fault(record.data_position, "The data goes on behind the end of the file", stack.index);
  }
  if (record.header.format_version != 0) check_sections(stack);
}

void FileCheck::check_sections(const WalkedStack& stack) {
  const StackRecord& record = stack.record;
  const StackFooter& footer = record.footer;
  const std::optional<std::string> metadata_fault =
      find_metadata_fault(record.metadata, record.header.format_version, record.header.rank);
  if (metadata_fault) {
    fault(stack.data_end(), "Invalid metadata found!\n" + *metadata_fault, stack.index);
  }
  if (record.header.format_version > newest_stack_version) {
    note(record.stack_position, "The stack is of a newer format version", stack.index);
  }
  if (footer.stack_end != 0 && footer.stack_end != stack.end) {
    note(stack.data_end(),
         "The footer says that the stack ends at " + std::to_string(footer.stack_end) +
             ", but it does at " + std::to_string(stack.end),
         stack.index);
  }
  if (footer.tag_block_size != 0 && footer.tag_block_size != encoded_size(record.tags)) {
    note(stack.data_end(), "The size of the tags is another one than the footer says", stack.index);
  }
}

void FileCheck::check_data(const WalkedStack& stack) {
  const StackRecord& record = stack.record;
  const bool inside = stack.has_header() && record.header.data_length <= file_size_ &&
                      record.data_position <= file_size_ - record.header.data_length;
  if (!inside) return;
  if (record.header.data_length == 0 && record.header.has_data != 0 &&
      record.number_of_samples != 0) {
    note(record.stack_position, "The stack has no data, though it was made with data", stack.index);
  }
  const TellFinding tell_fault = [&](u64 position, const std::string& what) {
    fault(position, what, stack.index);
  };
  const FindingSinks sinks{tell_fault, tell_fault, [&](u64 position, const std::string& what) {
                             note(position, what, stack.index);
                           }};
  check_samples(file_, record, sinks, progress_);
}

void FileCheck::check_unlinked() {
  UnlinkedStacks unlinked(file_, extents_.gaps(file_size_));
  while (const std::optional<UnlinkedStack> found = unlinked.next()) {
    const std::string state =
        found->is_whole ? "A whole stack that no link reaches" : "A stack that was not committed";
    note(found->stack.record.stack_position, state + "; 'vrel recover' saves it");
  }
}

// Of a damaged stack nobody knows how far it goes.
void FileCheck::check_gaps() {
  if (!is_reachable_) return;
  u64 dead = 0;
  const std::vector<Extent> gaps = extents_.gaps(file_size_);
  for (const Extent& gap : gaps) dead += gap.end - gap.begin;
  if (dead == 0) return;
  note(gaps.front().begin,
       std::to_string(dead) + " bytes belong to nothing, the first of them here");
}

}  // namespace

VerifyReport verify_file(VFile& file, ProgressBar& progress) {
  return FileCheck(file, progress).run();
}

}  // namespace Vrel::tool
