#include <vrelio/container/chain.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include "container/chain_source_internal.h"
#include "container/format_internal.h"
#include "foundation/raise_internal.h"
#include "stack/element_count_internal.h"

namespace Vrel {

namespace {

using namespace detail;

void read_stack_header(ChainSource& source, StackHeader& header) {
  StackHeaderBytes bytes;
  source.read(bytes.data(), bytes.size());
  if (!decode(bytes, header) || header.rank > max_rank) {
    raise(id_format, "Stack header not in vbf format!");
  }
  const auto replace_not_a_number = [](double length) { return std::isnan(length) ? 1.0 : length; };
  std::transform(header.lengths.begin(), header.lengths.begin() + header.rank,
                 header.lengths.begin(), replace_not_a_number);
}

// The bytes that stand in the file overlay those of a footer of defaults. So a shorter footer of an
// older writer leaves what it does not know at values that do no harm, and what a newer writer has
// added is skipped.
void read_stack_footer(ChainSource& source, StackFooter& footer) {
  constexpr std::size_t size_field = 4;
  StackFooterBytes bytes = encode(StackFooter());
  source.read(bytes.data(), size_field);
  decode(bytes, footer);
  const std::uint32_t size = footer.footer_size;
  if (size < size_field) raise(id_format, "Stack footer not in vbf format!");
  source.read(bytes.data() + size_field,
              std::min<std::size_t>(size, stack_footer_size) - size_field);
  if (size > stack_footer_size) source.skip(size - stack_footer_size);
  decode(bytes, footer);
}

void check_reader_version(const StackFooter& footer) {
  if (!footer.needs_newer_reader()) return;
  raise(id_format, "Cannot read stack with file format reader version %d. Need >= %d!",
        static_cast<int>(newest_stack_version), static_cast<int>(footer.required_reader_version));
}

void read_stack(ChainSource& source, StackRecord& stack, u64 open_length = 0) {
  StackHeader& header = stack.header;
  stack.stack_position = source.position();
  read_stack_header(source, header);
  if (header.data_length == 0) header.data_length = open_length;
  stack.number_of_samples = count_elements(header.sizes.data(), header.rank);
  stack.name = source.read_text(header.name_length);
  stack.description = source.read_text(header.description_length);
  stack.labels.resize(header.rank);
  stack.column_positions.resize(header.rank);
  stack.column_labels.resize(header.rank);
  stack.data_position = source.position();
  source.skip(header.data_length);
  if (header.format_version != 0) {
    read_stack_footer(source, stack.footer);
    check_reader_version(stack.footer);
    read_sections(source, stack);
  }
  stack.stack_end = stack.footer.stack_end != 0 ? stack.footer.stack_end : source.position();
}

void read_file_header(ChainSource& source, FileRecord& record) {
  record.file_position = source.position();
  FileHeaderBytes bytes;
  source.read(bytes.data(), bytes.size());
  if (!decode(bytes, record.header)) raise(id_format, "No VBF file header found!");
  record.description = source.read_text(record.header.description_length);
  if (record.header.format_version > 1) {
    record.dictionary_field_position = source.position();
    record.dictionary_position = read_u64(source);
  }
  record.header_end = source.position();
}

bool is_cut_off(const VrelError& error) {
  return error.get_id() == id_file_system && error.get_oserr_id() == 0;
}

// The dictionary is the last thing that a writer puts down, so a writer that was killed leaves
// none, or a part of one, or only the place for its position. None of this may keep the stacks from
// being read.
void read_file_dictionary(ChainSource& source, FileRecord& record) {
  const bool inside =
      record.dictionary_position >= record.header_end && record.dictionary_position < source.end();
  if (!inside) return;
  const u64 allowance = source.get_allowance();
  source.seek(record.dictionary_position);
  try {
    record.dictionary = read_dictionary(source);
    record.has_dictionary = true;
    record.dictionary_end = source.position();
  } catch (const VrelError& error) {
    if (!is_cut_off(error)) throw;
  }
  // What lies there may be anything, the stacks themselves too, and they are still to be read.
  source.set_allowance(allowance);
}

void read_stacks(ChainSource& source, FileRecord& record) {
  std::set<u64> visited;
  for (u64 position = record.header.first_stack; position != 0;) {
    if (!visited.insert(position).second)
      raise(id_format, "Invalid stack position specified in header!");
    source.seek(position);
    StackRecord stack;
    read_stack(source, stack);
    position = stack.header.next_stack;
    record.stacks.push_back(std::move(stack));
  }
}

void leave_file_at_position(ChainSource& source) { source.seek(source.position()); }

}  // namespace

void read_file_start(VFileAccess& file, FileRecord& record) {
  record = FileRecord();
  ChainSource source(file);
  read_file_header(source, record);
  read_file_dictionary(source, record);
  source.seek(record.header_end);
}

void read_stack_record(VFileAccess& file, StackRecord& stack, u64 open_length) {
  stack = StackRecord();
  ChainSource source(file);
  try {
    read_stack(source, stack, open_length);
  } catch (...) {
    leave_file_at_position(source);
    throw;
  }
  leave_file_at_position(source);
}

void read_chain(VFileAccess& file, FileRecord& record) {
  record = FileRecord();
  ChainSource source(file);
  read_file_header(source, record);
  read_file_dictionary(source, record);
  read_stacks(source, record);
  source.seek(record.header_end);
}

}  // namespace Vrel
