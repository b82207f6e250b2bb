#include "lib/recover.h"

#include <vrelio/container/chain.h>
#include <vrelio/foundation/data_type.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "lib/chain_walk.h"
#include "lib/printable_text.h"
#include "lib/progress_bar.h"
#include "lib/record_file.h"
#include "lib/recover_samples.h"
#include "lib/unlinked_stacks.h"
#include "lib/verify_samples.h"
#include "lib/verify_texts.h"

namespace Vrel::tool {

namespace {

std::string of_samples(u64 found, u64 expected) {
  return std::to_string(found) + " of " + std::to_string(expected) + " samples";
}

class Recovery {
 public:
  Recovery(VFile& file, std::string output, bool replace)
      : file_(file),
        path_(std::move(output)),
        replace_(replace),
        file_size_(size_of(file)),
        progress_(ProgressBar::on_terminal(file_size_)) {}

  RecoverReport run();

 private:
  void read_start();
  void save_chain();
  void save_linked(const WalkedStack& stack);
  void save_unlinked();
  void save_whole(StackRecord stack, const std::string& which);
  // Whether the flush points are wrong.
  bool check_whole(const StackRecord& stack, const std::string& name);
  void save_remains(StackRecord stack, u64 limit, const std::string& which, bool is_promised);
  bool save_uncorrected(const StackRecord& stack, u64 limit, const std::string& which);
  void write_remains(StackRecord& stack, u64 limit, u64 bytes);
  RecordFile& output();
  void tell_saved(const std::string& which, const std::string& what) {
    report_.saved.push_back(which + ": " + what);
  }
  void tell_missing(const std::string& what) { report_.missing.push_back(what); }
  bool is_empty_handed() const { return !has_header_ && !output_; }

  VFile& file_;
  std::string path_;
  bool replace_;
  u64 file_size_;
  ProgressBar progress_;
  FileRecord start_;
  std::optional<VrelError> start_error_;
  bool has_header_ = false;
  FileExtents extents_;
  std::optional<RecordFile> output_;
  RecoverReport report_;
};

RecoverReport Recovery::run() {
  read_start();
  save_chain();
  save_unlinked();
  if (is_empty_handed()) throw VrelError(*start_error_);
  output().finish(start_.dictionary);
  return std::move(report_);
}

RecordFile& Recovery::output() {
  if (!output_) output_.emplace(path_, replace_, start_);
  return *output_;
}

void Recovery::read_start() {
  try {
    read_file_start(file_, start_);
    has_header_ = true;
  } catch (const VrelError& error) {
    if (error.get_oserr_id() > 0) throw;
    start_error_ = error;
    tell_missing("the file's description: " + std::string(error.get_msg()));
    start_.description.clear();
    return;
  }
  extents_.add({0, start_.header_end});
  if (start_.has_dictionary) {
    extents_.add({start_.dictionary_position, start_.dictionary_end});
  } else if (start_.dictionary_position != 0) {
    tell_missing("the file's dictionary, with its OME metadata");
  }
}

// A header whose description is damaged has its first link all the same.
void Recovery::save_chain() {
  ChainWalk walk(file_, start_, extents_);
  while (const std::optional<WalkedStack> stack = walk.next()) save_linked(*stack);
  if (walk.broken_link()) {
    tell_missing("what the link at byte " + std::to_string(walk.broken_link()->position) +
                 " leads to: " + walk.broken_link()->what);
  }
}

void Recovery::save_linked(const WalkedStack& stack) {
  const std::string which = "stack " + std::to_string(stack.index);
  if (!stack.error && stack.data_end() <= file_size_) return save_whole(stack.record, which);
  if (!stack.has_header()) {
    return tell_missing(which + ", at byte " + std::to_string(stack.record.stack_position) + ": " +
                        stack.error->get_msg());
  }
  if (stack.record.footer.needs_newer_reader()) {
    return tell_missing(which + ' ' + quote(stack.record.name) + ": " + stack.error->get_msg());
  }
  if (stack.error) {
    tell_missing("what stands behind the samples of " + which + ": " + stack.error->get_msg());
  }
  save_remains(stack.record, file_size_, which, true);
}

void Recovery::save_unlinked() {
  UnlinkedStacks unlinked(file_, extents_.gaps(file_size_));
  while (const std::optional<UnlinkedStack> found = unlinked.next()) {
    const StackRecord& record = found->stack.record;
    const std::string which = "the stack at byte " + std::to_string(record.stack_position);
    if (found->is_whole) {
      save_whole(record, which + ", that no link reaches");
    } else if (!save_uncorrected(record, found->limit, which)) {
      save_remains(record, found->limit, which + ", that was not committed", false);
    }
  }
}

// What is wrong beside the samples is left out: metadata that cannot be read would keep the whole file
// from being opened, and wrong flush points lead to wrong samples.
void Recovery::save_whole(StackRecord stack, const std::string& which) {
  const std::string name = which + ' ' + quote(stack.name);
  if (check_whole(stack, name)) stack.flush_positions.clear();
  const StackHeader& header = stack.header;
  if (const auto fault = find_metadata_fault(stack.metadata, header.format_version, header.rank)) {
    tell_missing("the metadata of " + name + ": " + *fault);
    stack.metadata.clear();
  }
  ProgressBar silent(0, {}, std::chrono::steady_clock::now);
  output().copy_stack(file_, stack, silent);
  tell_saved(name, "with all its stored bytes");
}

bool Recovery::check_whole(const StackRecord& stack, const std::string& name) {
  bool has_flush_faults = false;
  const auto fault = [&](u64, const std::string& what) {
    tell_missing("samples of " + name + ": " + what);
  };
  const auto flush_fault = [&](u64, const std::string& what) {
    if (!has_flush_faults) tell_missing("the flush points of " + name + ": " + what);
    has_flush_faults = true;
  };
  check_samples(file_, stack, {fault, flush_fault, [](u64, const std::string&) {}}, progress_);
  return has_flush_faults;
}

// A writer that died between the footer and its last corrections has left everything.
bool Recovery::save_uncorrected(const StackRecord& stack, u64 limit, const std::string& which) {
  if (stack.header.data_length != 0 || is_growing(stack.header)) return false;
  SampleRemains remains(file_, stack, limit);
  const u64 expected = size_of_samples(stack);
  std::vector<unsigned char> block(256u << 10);
  for (u64 left = expected; left > 0;) {
    const auto wanted = static_cast<unsigned>(std::min<u64>(left, block.size()));
    const unsigned size = remains.read(block.data(), wanted);
    if (size < wanted) return false;
    left -= size;
  }
  if (expected == 0 || !remains.is_stream_whole()) return false;
  StackRecord whole;
  file_.seek(stack.stack_position);
  try {
    read_stack_record(file_, whole, remains.stored_size());
  } catch (const VrelError& error) {
    if (error.get_oserr_id() > 0) throw;
    return false;
  }
  if (whole.footer.stack_end != file_.tell() || file_.tell() > limit) return false;
  save_whole(whole, which + ", that was not committed");
  return true;
}

// Of a stack that was made empty nothing but its header is to be found.
void Recovery::save_remains(StackRecord stack, u64 limit, const std::string& which,
                            bool is_promised) {
  const std::string name = which + ' ' + quote(stack.name);
  const bool is_empty =
      stack.header.data_length == 0 && (is_promised || stack.header.has_data == 0);
  if (is_empty) {
    write_remains(stack, limit, 0);
    return tell_saved(name, "without samples");
  }
  const auto sample_size = static_cast<unsigned>(vrel_dt_get_size(stack.header.data_type));
  const u64 step = bytes_per_step(stack);
  const u64 left = step == 0 ? 0 : count_remains(file_, stack, limit);
  const u64 found = step == 0 ? 0 : left / step * step;
  const bool is_growth = is_growing(stack.header);
  const u64 count = found == 0 ? 0 : found / sample_size;
  const std::string counts =
      is_growth ? std::to_string(count) + " samples" : of_samples(count, stack.number_of_samples);
  if (found == 0 && (is_growth || stack.number_of_samples == 0)) {
    return report_.notes.push_back(name + ": no samples were written");
  }
  if (!is_growth && count < stack.number_of_samples)
    tell_missing(name + ": " + counts + " are left");
  if (found == 0) return;
  if (!is_growth && count < stack.number_of_samples) {
    report_.notes.push_back(name + ": the length of its last axis stays that of all samples");
  }
  if (is_growth && found < left) {
    report_.notes.push_back(name + ": its last step was not whole and is left out");
  }
  write_remains(stack, limit, found);
  tell_saved(name, counts);
}

void Recovery::write_remains(StackRecord& stack, u64 limit, u64 bytes) {
  if (bytes != 0 && stack.header.rank > 0) {
    cut_last_axis(stack, static_cast<std::uint32_t>(bytes / bytes_per_step(stack)));
  }
  stack.labels.resize(stack.header.rank);
  const StackRecord source = stack;
  if (stack.header.compression_type > 1) stack.header.compression_type = 0;
  if (is_zipped(stack.header)) {
    const int level = stack.header.compression_level;
    if (level < 0 || level > 9) stack.header.compression_level = 6;
    stack.flush_block_size = RecordWriter::automatic_flush_block_size;
  } else {
    stack.flush_block_size = 0;
  }
  SampleRemains remains(file_, source, limit);
  const auto next = [&](unsigned char* block, unsigned size) {
    const unsigned count = remains.read(block, static_cast<unsigned>(std::min<u64>(size, bytes)));
    bytes -= count;
    return count;
  };
  output().write_stack(stack, next, progress_);
}

}  // namespace

RecoverReport recover(VFile& file, const std::string& output, bool replace) {
  return Recovery(file, output, replace).run();
}

}  // namespace Vrel::tool
