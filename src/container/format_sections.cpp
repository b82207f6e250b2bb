// What has no fixed size: the sections behind a footer, dictionaries, single numbers.
#include <vrelio/container/chain.h>

#include <algorithm>
#include <limits>

#include "container/chain_source_internal.h"
#include "container/format_internal.h"
#include "file/bytes_internal.h"
#include "foundation/raise_internal.h"

namespace Vrel::detail {

namespace {

// Numbers go through a small buffer in both directions, so that a table of millions takes neither
// millions of system calls nor a second copy of itself.
constexpr std::size_t numbers_per_block = 1024;

template <class Number, class Put>
void write_numbers(VFileAccess& file, const std::vector<Number>& numbers, Put put) {
  unsigned char block[8 * numbers_per_block];
  for (std::size_t done = 0; done < numbers.size();) {
    const std::size_t count = std::min(numbers.size() - done, numbers_per_block);
    for (std::size_t i = 0; i < count; ++i) put(block + 8 * i, numbers[done + i]);
    file.write(block, static_cast<unsigned>(8 * count));
    done += count;
  }
}

template <class Number, class Get>
std::vector<Number> read_numbers(ChainSource& source, u64 count, Get get) {
  source.expect(count, 8);
  std::vector<Number> numbers;
  numbers.reserve(count);
  unsigned char block[8 * numbers_per_block];
  while (numbers.size() < count) {
    const std::size_t piece = std::min<u64>(count - numbers.size(), numbers_per_block);
    source.read(block, 8 * piece);
    for (std::size_t i = 0; i < piece; ++i) numbers.push_back(get(block + 8 * i));
  }
  return numbers;
}

std::uint32_t read_u32(ChainSource& source) {
  unsigned char bytes[4];
  source.read(bytes, sizeof bytes);
  return get_u32(bytes);
}

std::string read_prefixed_text(ChainSource& source) { return source.read_text(read_u32(source)); }

// The count is believed text by text: each has at least its length in the file.
std::vector<std::string> read_texts(ChainSource& source, std::uint32_t count) {
  std::vector<std::string> texts;
  for (std::uint32_t i = 0; i < count; ++i) texts.push_back(read_prefixed_text(source));
  return texts;
}

void check_keys(const Dictionary& dictionary) {
  if (dictionary.count(std::string()) != 0) raise_empty_tag_key();
}

}  // namespace

void raise_empty_tag_key() { raise(id_plain, "Tag keys cannot be empty!"); }

std::uint32_t length_field(std::size_t length) {
  if (length >= impossible_length) raise(id_plain, "String too long!");
  return static_cast<std::uint32_t>(length);
}

void write_u32(VFileAccess& file, std::uint32_t value) {
  unsigned char bytes[4];
  put_u32(bytes, value);
  file.write(bytes, sizeof bytes);
}

void write_u64(VFileAccess& file, u64 value) {
  unsigned char bytes[8];
  put_u64(bytes, value);
  file.write(bytes, sizeof bytes);
}

u64 read_u64(ChainSource& source) {
  unsigned char bytes[8];
  source.read(bytes, sizeof bytes);
  return get_u64(bytes);
}

void write_dictionary(VFileAccess& file, const Dictionary& dictionary) {
  check_keys(dictionary);
  for (const auto& [key, value] : dictionary) {
    file.write_str(key, true);
    file.write_str(value, true);
  }
  write_u32(file, 0);
}

Dictionary read_dictionary(ChainSource& source) {
  Dictionary dictionary;
  for (std::string key = read_prefixed_text(source); !key.empty();
       key = read_prefixed_text(source)) {
    dictionary[std::move(key)] = read_prefixed_text(source);
  }
  return dictionary;
}

StackFooter make_footer(const StackRecord& stack) {
  StackFooter footer;
  for (std::size_t axis = 0; axis < stack.header.rank; ++axis) {
    footer.has_column_positions[axis] = stack.column_positions[axis].empty() ? 0 : 1;
    footer.has_column_labels[axis] = stack.column_labels[axis].empty() ? 0 : 1;
  }
  footer.metadata_length = length_field(stack.metadata.size());
  footer.data_unit = stack.footer.data_unit;
  footer.units = stack.footer.units;
  footer.flush_point_count = stack.flush_positions.size();
  footer.flush_block_size = stack.flush_block_size;
  footer.tag_block_size = encoded_size(stack.tags);
  footer.required_reader_version = 0;
  return footer;
}

void write_sections(VFileAccess& file, const StackRecord& stack) {
  check_keys(stack.tags);
  for (const std::string& label : stack.labels) file.write_str(label, true);
  for (const auto& positions : stack.column_positions) write_numbers(file, positions, put_f64);
  for (const auto& labels : stack.column_labels) {
    for (const std::string& label : labels) file.write_str(label, true);
  }
  if (!stack.metadata.empty()) file.write_str(stack.metadata, false);
  write_numbers(file, stack.flush_positions, put_u64);
  write_dictionary(file, stack.tags);
}

void read_sections(ChainSource& source, StackRecord& stack) {
  const StackHeader& header = stack.header;
  const StackFooter& footer = stack.footer;
  stack.labels = read_texts(source, header.rank);
  for (std::size_t axis = 0; axis < header.rank; ++axis) {
    if (footer.has_column_positions[axis] == 0) continue;
    stack.column_positions[axis] = read_numbers<double>(source, header.sizes[axis], get_f64);
  }
  for (std::size_t axis = 0; axis < header.rank; ++axis) {
    if (footer.has_column_labels[axis] == 0) continue;
    stack.column_labels[axis] = read_texts(source, header.sizes[axis]);
  }
  stack.metadata = source.read_text(footer.metadata_length);
  if (footer.flush_point_count != 0) {
    stack.flush_positions = read_numbers<u64>(source, footer.flush_point_count, get_u64);
    stack.flush_block_size = footer.flush_block_size;
  }
  if (footer.tag_block_size != 0) stack.tags = read_dictionary(source);
}

}  // namespace Vrel::detail

namespace Vrel {

u64 encoded_size(const Dictionary& dictionary) {
  u64 size = 4;
  for (const auto& [key, value] : dictionary) size += 8 + key.size() + value.size();
  return size;
}

}  // namespace Vrel
