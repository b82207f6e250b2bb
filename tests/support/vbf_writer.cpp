#include "support/vbf_writer.h"

#include <vrelio/file/zipped_segment.h>

#include <algorithm>

#include "container/format_internal.h"

namespace Vrel::testing {

namespace {

using namespace Vrel::detail;

constexpr u64 end_of_file = ~u64{0};

// The order of steps is that of a file that can be read up to the last finished stack, whenever its
// writer dies.
class Writer {
 public:
  Writer(VFile& file, std::uint32_t format_version)
      : file_(file), format_version_(format_version) {}

  void write_file_header(const std::string& description) {
    FileHeader header;
    header.format_version = format_version_;
    header.description_length = static_cast<std::uint32_t>(description.size());
    link_position_ = file_.tell() + first_stack_offset;
    write_bytes(encode(header));
    file_.write_str(description, false);
    dictionary_field_ = file_.tell();
    if (format_version_ > 1) write_u64(file_, 0);
  }

  void write_stack(StackToWrite stack) {
    const u64 position = write_stack_header(stack.record);
    stack.record.header.data_length = write_samples(stack);
    const u64 footer_position = file_.tell();
    write_bytes(encode(make_footer(stack.record)));
    write_sections(file_, stack.record);
    const u64 end = file_.tell();
    correct(footer_position + stack_end_offset, end);
    correct(position + data_length_offset, stack.record.header.data_length);
    correct(link_position_, position);
    link_position_ = position + next_stack_offset;
  }

  void write_closing_dictionary(const Dictionary& dictionary) {
    if (format_version_ < 2) return;
    const u64 end = file_.seek(end_of_file);
    correct(dictionary_field_, end);
    write_dictionary(file_, dictionary);
  }

 private:
  template <class Bytes>
  void write_bytes(const Bytes& bytes) {
    file_.write(bytes.data(), static_cast<unsigned>(bytes.size()));
  }

  void correct(u64 field, u64 value) {
    const u64 here = file_.tell();
    file_.seek(field);
    write_u64(file_, value);
    file_.seek(here);
  }

  u64 write_stack_header(StackRecord& record) {
    const u64 position = file_.tell();
    record.header.name_length = static_cast<std::uint32_t>(record.name.size());
    record.header.description_length = static_cast<std::uint32_t>(record.description.size());
    record.header.data_length = 0;
    record.header.next_stack = 0;
    write_bytes(encode(record.header));
    file_.write_str(record.name, false);
    file_.write_str(record.description, false);
    return position;
  }

  // Fills the record's flush table; a raw stack has none.
  u64 write_samples(StackToWrite& stack) {
    if (stack.samples.empty()) return 0;
    StackRecord& record = stack.record;
    VZippedSegment segment;
    segment.init_w(file_, record.header.compression_type == 1 ? record.header.compression_level : 0,
                   VZippedSegment::no_limit);
    if (record.flush_block_size != 0) segment.set_flush_block_size(record.flush_block_size);
    segment.write(stack.samples.data(), static_cast<unsigned>(stack.samples.size()));
    const u64 length = segment.write_end();
    record.flush_positions = segment.get_flush_positions(record.flush_block_size);
    return length;
  }

  VFile& file_;
  std::uint32_t format_version_;
  u64 link_position_ = 0;
  u64 dictionary_field_ = 0;
};

}  // namespace

StackRecord make_stack_record(int data_type, const std::vector<std::uint32_t>& sizes) {
  StackRecord record;
  record.header.data_type = data_type;
  record.header.rank = static_cast<std::uint32_t>(sizes.size());
  std::copy(sizes.begin(), sizes.end(), record.header.sizes.begin());
  std::fill_n(record.header.lengths.begin(), sizes.size(), 1.0);
  record.labels.resize(sizes.size());
  record.column_positions.resize(sizes.size());
  record.column_labels.resize(sizes.size());
  return record;
}

void write_vbf(VFile& file, const std::string& description, const std::vector<StackToWrite>& stacks,
               const Dictionary& dictionary, std::uint32_t format_version) {
  Writer writer(file, format_version);
  writer.write_file_header(description);
  for (const StackToWrite& stack : stacks) writer.write_stack(stack);
  writer.write_closing_dictionary(dictionary);
}

}  // namespace Vrel::testing
