// A stack on its way into the file. The order in which bytes get there: docs/format.md.
#include <vrelio/foundation/convert.h>
#include <vrelio/foundation/data_type.h>

#include <algorithm>
#include <limits>

#include "container/bf_file_imp_internal.h"
#include "container/bf_stack_imp_internal.h"
#include "container/chain_source_internal.h"
#include "container/conversion_internal.h"
#include "container/format_internal.h"
#include "container/record_output_internal.h"
#include "file/segment_writer_internal.h"
#include "foundation/data_type_list_internal.h"
#include "foundation/raise_internal.h"
#include "stack/stack_errors_internal.h"

namespace Vrel::detail {

namespace {

constexpr int best_compression = 9;

void check_compression(const StackHeader& header) {
  if (header.compression_type != compression_raw && header.compression_type != compression_zlib) {
    raise(id_plain, "Invalid compression type specified!");
  }
  const int level = deflate_level(header);
  if (level < 0 || level > best_compression) SegmentWriter::raise_failure(engine_unusable);
}

void check_imaginary(const void* imaginary, int type, int stored_type) {
  if (imaginary == nullptr) return;
  if ((type & complex_flag) != 0) {
    raise(id_plain, "Imaginary block given but buffer is already complex!");
  }
  if ((stored_type & complex_flag) == 0) {
    raise(id_plain, "Imaginary block given but stack is not complex!");
  }
}

[[noreturn]] void raise_too_many_samples() {
  raise(id_plain, "Trying to write more samples than the stack is long!");
}

}  // namespace

void VBFStackImp::commit(int type) { write(type, nullptr, nullptr, 0); }

void VBFStackImp::write(int type, const void* data, const void* imaginary, unsigned int count) {
  check_file();
  check_can_be_written();
  const WritePlan plan = plan_write(type, imaginary, count);
  if (state_ == state_ready) begin_writing(plan);
  const auto sample_size = static_cast<unsigned int>(vrel_dt_get_size(type));
  write_samples({type, static_cast<const unsigned char*>(data),
                 static_cast<const unsigned char*>(imaginary), sample_size},
                plan.count);
  if (plan.completes) complete();
}

void VBFStackImp::check_can_be_written() const {
  if (state_ == state_created) {
    raise(id_plain, "Stack not ready to be commited. Meta-information missing!");
  }
  if (state_ == state_complete) {
    raise(id_plain, "Stack is already complete. Invalid call to write()!");
  }
  file_->check_is_last(this);
}

VBFStackImp::WritePlan VBFStackImp::plan_write(int type, const void* imaginary,
                                               unsigned int count) const {
  WritePlan plan = {get_dt(), remaining_, count, false};
  if (state_ == state_ready) plan = plan_first_write(type, imaginary, count);
  check_imaginary(imaginary, type, plan.stored_type);
  plan.completes =
      growing_ ? is_growing_completed_by(plan.count) : is_completed_by(plan.count, plan.remaining);
  check_storable(plan, type, imaginary);
  return plan;
}

VBFStackImp::WritePlan VBFStackImp::plan_first_write(int type, const void* imaginary,
                                                     unsigned int count) const {
  if (!growing_ && empty_ && count != 0) raise(id_plain, "Trying to write to empty stack!");
  const unsigned int length = growing_ || empty_ ? 0 : get_number_of_elements();
  WritePlan plan = {get_dt(), length, count == all_samples ? length : count, false};
  if (plan.stored_type != 0) return plan;
  if (type == 0) raise(id_plain, "Stack data type not set. Cannot commit stack to file!");
  plan.stored_type = imaginary != nullptr ? type | complex_flag : type;
  return plan;
}

bool VBFStackImp::is_completed_by(unsigned int count, unsigned int remaining) const {
  if (count > remaining) raise_too_many_samples();
  if (count == 0 && remaining != 0) raise(id_plain, "Not enough samples written!");
  return count == remaining;
}

// What the steps of a size of zero hold is nothing.
bool VBFStackImp::is_growing_completed_by(unsigned int count) const {
  const u64 written = u64{written_} + stored_ahead_;
  if (count == 0) {
    if (written != 0 && written % samples_per_step_ != 0) {
      raise(id_plain, "Not on sample boundary!");
    }
    return true;
  }
  if (samples_per_step_ == 0) raise_too_many_samples();
  if (written + count > std::numeric_limits<unsigned int>::max()) raise_product_too_large();
  return false;
}

// Samples of the stored type have no imaginary block, which `check_imaginary` refuses for it.
void VBFStackImp::check_storable(const WritePlan& plan, int type, const void* imaginary) const {
  check_compression(record_.header);
  const bool is_plain = type == plan.stored_type;
  const bool is_known = vrel_dt_get_size(plan.stored_type) != 0;
  const bool is_converted =
      plan.count == 0 || is_plain ||
      vrel_dt_convert(type, plan.stored_type, nullptr, nullptr, 0, imaginary, nullptr) == 0;
  if (!is_known || !is_converted) raise_no_conversion(type, plan.stored_type);
}

void VBFStackImp::begin_writing(const WritePlan& plan) {
  file_->write_header();
  if (get_dt() == 0) set_variable_type(plan.stored_type);
  remaining_ = plan.remaining;
  written_ = 0;
  write_stack_header();
  lock();
  open_segment();
  state_ = state_writing;
}

void VBFStackImp::write_stack_header() {
  const StackHeader header = make_header();
  record_.stack_position = write_stack_start(*file_, header, get_name(), get_description());
  record_.header = header;
}

void VBFStackImp::open_segment() {
  record_.data_position = checked_position(
      segment_.init_w(*file_, deflate_level(record_.header), VZippedSegment::no_limit));
  record_.flush_block_size =
      choose_flush_block_size(flush_block_size_, get_size(0), get_sample_size(), get_sizes());
  if (record_.flush_block_size != 0) segment_.set_flush_block_size(record_.flush_block_size);
}

void VBFStackImp::write_samples(Source source, unsigned int count) {
  while (count > 0) {
    const unsigned int piece = std::min(count, get_piece_length());
    write_piece(source, piece);
    count -= piece;
    const std::size_t size = std::size_t{piece} * source.sample_size;
    source.data += size;
    if (source.imaginary != nullptr) source.imaginary += size;
  }
  update_variable_size();
}

// A piece counts once all of it is stored and nobody has cancelled. What was stored of one that does not
// count is taken for the begin of the next.
void VBFStackImp::write_piece(const Source& source, unsigned int count) {
  if (stored_ahead_ < count) store(source, stored_ahead_, count - stored_ahead_);
  file_->report_progress(count * get_sample_size());
  // The callback may have closed the file, or made the stack complete by adding the next one.
  check_file();
  check_can_be_written();
  stored_ahead_ -= count;
  written_ += count;
  if (!growing_) remaining_ -= count;
}

// The output that a zlib stream could not get rid of is lost, and so is the stream; raw samples are
// written again at the same place.
template <class Work>
void VBFStackImp::write_to_segment(Work work) {
  try {
    work();
  } catch (...) {
    if (deflate_level(record_.header) > 0) segment_.end();
    throw;
  }
}

void VBFStackImp::store(const Source& source, unsigned int first, unsigned int count) {
  const bool is_plain = source.type == get_dt();
  const unsigned int block = is_plain ? count : get_block_length(source.sample_size);
  for (const unsigned int end = first + count; first < end;) {
    const unsigned int length = std::min(end - first, block);
    write_to_segment([&] { store_block(source, first, length); });
    first += length;
    stored_ahead_ += length;
  }
}

void VBFStackImp::store_block(const Source& source, unsigned int first, unsigned int count) {
  const std::size_t offset = std::size_t{first} * source.sample_size;
  const unsigned char* samples = source.data + offset;
  const unsigned int size = count * get_sample_size();
  if (source.type != get_dt()) {
    const unsigned char* const imaginary =
        source.imaginary == nullptr ? nullptr : source.imaginary + offset;
    conversion_buffer_.resize(size);
    convert_samples({source.type, samples, imaginary},
                    {get_dt(), conversion_buffer_.data(), nullptr}, count);
    samples = conversion_buffer_.data();
  }
  segment_.write(samples, size);
}

void VBFStackImp::update_variable_size() {
  if (growing_ && samples_per_step_ != 0) set_variable_size(written_ / samples_per_step_);
}

void VBFStackImp::complete() {
  written_ += stored_ahead_;
  stored_ahead_ = 0;
  update_variable_size();
  finish_samples();
  write_footer();
  file_->on_stack_finished(this);
  state_ = state_complete;
  segment_.end();
  conversion_buffer_ = {};
}

void VBFStackImp::finish_samples() {
  if (samples_finished_) return;
  if (written_ != 0) {
    write_to_segment([&] { segment_.write_end(); });
    record_.header.data_length = segment_.get_cur_pos_file() - record_.data_position;
    if (record_.flush_block_size != 0) {
      record_.flush_positions = segment_.get_flush_positions(record_.flush_block_size);
    }
  }
  record_.number_of_samples = get_number_of_elements();
  samples_finished_ = true;
}

// The footer may be written again after an error, at the same place.
void VBFStackImp::write_footer() {
  const StackRecord record = make_record();
  const u64 end = write_stack_end(*file_, record, make_footer(record));
  correct(*file_, record.stack_position + data_length_offset, record.header.data_length);
  if (growing_) {
    const unsigned last_axis = record.header.rank - 1;
    checked_seek(*file_, record.stack_position + size_offset(last_axis));
    write_u32(*file_, get_dimension_size(last_axis));
  }
  checked_seek(*file_, end);
  record_.stack_end = end;
  set_meta_data_string(record.metadata);
}

}  // namespace Vrel::detail
