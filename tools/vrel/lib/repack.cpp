#include "lib/repack.h"

#include <vrelio/container/chain.h>
#include <vrelio/container/sample_reader.h>
#include <vrelio/foundation/data_type.h>

#include <algorithm>

#include "lib/progress_bar.h"
#include "lib/record_file.h"
#include "lib/verify_samples.h"

namespace Vrel::tool {

namespace {

constexpr int least_level = 1;
constexpr int best_level = 9;
constexpr int default_level = 6;

bool is_level(int level) { return level >= least_level && level <= best_level; }

// Samples of a type that nobody knows, and those that are nowhere, stay as they are.
bool is_recompressed(const StackRecord& stack, const RepackOptions& options) {
  if (stack.header.data_length == 0 || vrel_dt_get_size(stack.header.data_type) == 0) return false;
  return options.level || (options.flush_block_size && is_zipped(stack.header));
}

void set_compression(StackHeader& header, const RepackOptions& options) {
  if (options.level) {
    header.compression_type = *options.level == 0 ? 0 : 1;
    header.compression_level = *options.level;
  } else if (!is_level(header.compression_level)) {
    header.compression_level = default_level;
  }
}

void set_flush_block_size(StackRecord& stack, const RepackOptions& options) {
  if (options.flush_block_size) {
    stack.flush_block_size = *options.flush_block_size;
  } else if (stack.flush_block_size == 0) {
    stack.flush_block_size = RecordWriter::automatic_flush_block_size;
  }
  if (!is_zipped(stack.header)) stack.flush_block_size = 0;
}

void recompress(VFile& file, const StackRecord& stack, const RepackOptions& options,
                RecordFile& output, ProgressBar& progress) {
  StackRecord target = stack;
  set_compression(target.header, options);
  set_flush_block_size(target, options);
  SampleReader reader(file, stack);
  u64 position = 0;
  const auto next = [&](unsigned char* bytes, unsigned size) {
    const u64 left = reader.get_number_of_samples() - position;
    const u64 count = std::min<u64>(left, size / reader.get_sample_size());
    reader.read(position, count, bytes);
    position += count;
    return static_cast<unsigned>(count * reader.get_sample_size());
  };
  output.write_stack(target, next, progress);
}

u64 work_for(const FileRecord& file, const RepackOptions& options) {
  u64 bytes = 0;
  for (const StackRecord& stack : file.stacks) {
    bytes += is_recompressed(stack, options) ? size_of_samples(stack) : stack.header.data_length;
  }
  return bytes;
}

}  // namespace

void repack(VFile& file, const std::string& output, const RepackOptions& options) {
  FileRecord record;
  read_chain(file, record);
  RecordFile target(output, options.replace, record);
  ProgressBar progress = ProgressBar::on_terminal(work_for(record, options));
  for (const StackRecord& stack : record.stacks) {
    if (is_recompressed(stack, options)) {
      recompress(file, stack, options, target, progress);
    } else {
      target.copy_stack(file, stack, progress);
    }
  }
  target.finish(record.dictionary);
}

}  // namespace Vrel::tool
