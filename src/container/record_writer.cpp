#include <vrelio/container/chain.h>
#include <vrelio/container/record_writer.h>
#include <vrelio/foundation/data_type.h>

#include <utility>

#include "container/chain_source_internal.h"
#include "container/flush_plan_internal.h"
#include "container/format_internal.h"
#include "container/record_buffer_internal.h"
#include "container/record_output_internal.h"
#include "foundation/raise_internal.h"
#include "stack/element_count_internal.h"

namespace Vrel {

namespace {

using namespace detail;

static_assert(RecordWriter::automatic_flush_block_size == automatic_block_size);

template <class Columns>
bool are_complete(const std::vector<Columns>& columns, const StackHeader& header) {
  if (columns.size() != header.rank) return false;
  for (std::size_t axis = 0; axis < columns.size(); ++axis) {
    const bool fits = columns[axis].empty() || columns[axis].size() == header.sizes[axis];
    if (!fits) return false;
  }
  return true;
}

void check_record(const StackRecord& stack) {
  const StackHeader& header = stack.header;
  if (header.rank > max_rank) raise(id_format, "Stack header not in vbf format!");
  const bool fits = stack.labels.size() == header.rank &&
                    are_complete(stack.column_positions, header) &&
                    are_complete(stack.column_labels, header);
  if (!fits) raise(id_plain, "Stack record does not fit its sizes!");
  if (stack.tags.count(std::string()) != 0) raise_empty_tag_key();
}

// A flag keeps its number where it says what is written; nothing is written for a size of 0.
template <class Columns>
void set_flags(std::array<std::uint32_t, max_rank>& flags, const std::vector<Columns>& columns,
               const StackHeader& header) {
  for (std::size_t axis = 0; axis < header.rank; ++axis) {
    if (columns[axis].size() != header.sizes[axis]) {
      flags[axis] = 0;
    } else if (flags[axis] == 0 && !columns[axis].empty()) {
      flags[axis] = 1;
    }
  }
}

StackFooter complete_footer(const StackRecord& stack) {
  StackFooter footer = stack.footer;
  footer.footer_size = stack_footer_size;
  set_flags(footer.has_column_positions, stack.column_positions, stack.header);
  set_flags(footer.has_column_labels, stack.column_labels, stack.header);
  footer.metadata_length = length_field(stack.metadata.size());
  footer.flush_point_count = stack.flush_positions.size();
  footer.tag_block_size = encoded_size(stack.tags);
  return footer;
}

}  // namespace

RecordWriter::RecordWriter(VFile& file, const FileRecord& record)
    : file_(file), format_version_(record.header.format_version) {
  const FileFields fields = write_file_start(file, format_version_, record.description);
  link_position_ = fields.link;
  dictionary_field_ = fields.dictionary;
}

void RecordWriter::begin_stack(StackRecord stack, Samples form) {
  check_record(stack);
  const StackHeader& header = stack.header;
  stack.number_of_samples = count_elements(header.sizes.data(), header.rank);
  stack_ = std::move(stack);
  form_ = form;
  written_ = 0;
  write_header();
  open_segment();
}

void RecordWriter::write_header() {
  StackHeader& header = stack_.header;
  header.name_length = length_field(stack_.name.size());
  header.description_length = length_field(stack_.description.size());
  header.data_length = 0;
  header.next_stack = 0;
  stack_.stack_position = write_stack_start(file_, header, stack_.name, stack_.description);
}

void RecordWriter::open_segment() {
  const int level = form_ == Samples::plain ? deflate_level(stack_.header) : 0;
  stack_.data_position = checked_position(segment_.init_w(file_, level, VZippedSegment::no_limit));
  if (form_ == Samples::stored) return;
  stack_.flush_positions.clear();
  const auto sample_size = static_cast<unsigned>(vrel_dt_get_size(stack_.header.data_type));
  const auto& sizes = stack_.header.sizes;
  if (stack_.flush_block_size == automatic_flush_block_size) {
    stack_.flush_block_size =
        choose_flush_block_size(automatic_block_size, u64{stack_.number_of_samples} * sample_size,
                                sample_size, {sizes.begin(), sizes.begin() + stack_.header.rank});
  }
  if (level > 0 && stack_.flush_block_size != 0) {
    segment_.set_flush_block_size(stack_.flush_block_size);
  }
}

void RecordWriter::write(const void* bytes, unsigned size) {
  segment_.write(bytes, size);
  written_ += size;
}

void RecordWriter::commit_stack() {
  close_segment();
  write_footer();
  correct_and_return(link_position_, stack_.stack_position);
  link_position_ = stack_.stack_position + next_stack_offset;
  stack_ = StackRecord();
}

void RecordWriter::close_segment() {
  const int sample_size = vrel_dt_get_size(stack_.header.data_type);
  const u64 expected = u64{stack_.number_of_samples} * static_cast<unsigned>(sample_size);
  if (form_ == Samples::plain && written_ != 0 && written_ != expected) {
    raise(id_plain, "Not enough samples written!");
  }
  if (written_ != 0) {
    stack_.header.data_length = segment_.write_end();
    if (form_ == Samples::plain) {
      stack_.footer.flush_block_size = stack_.flush_block_size;
      u64 block_size = 0;
      stack_.flush_positions = segment_.get_flush_positions(block_size);
    }
  }
  segment_.end();
}

void RecordWriter::write_footer() {
  if (stack_.header.format_version != 0) {
    write_stack_end(file_, stack_, complete_footer(stack_));
  } else {
    checked_seek(file_, stack_.data_position + stack_.header.data_length);
  }
  correct_and_return(stack_.stack_position + data_length_offset, stack_.header.data_length);
}

void RecordWriter::correct_and_return(u64 field, u64 value) {
  const u64 here = checked_tell(file_);
  correct(file_, field, value);
  checked_seek(file_, here);
}

void RecordWriter::finish(const Dictionary& dictionary) {
  if (format_version_ < 2) return;
  const u64 position = checked_tell(file_);
  RecordBuffer buffer;
  write_dictionary(buffer, dictionary);
  buffer.flush_to(file_);
  correct_and_return(dictionary_field_, position);
}

}  // namespace Vrel
