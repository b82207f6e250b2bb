// Every byte of the container format, in both directions. Layout: docs/format.md.
#pragma once

#include <vrelio/container/records.h>

#include <array>
#include <cstddef>
#include <string>

namespace Vrel::detail {

constexpr std::size_t file_header_size = 26;
constexpr std::size_t stack_header_size = 368;
constexpr std::size_t unit_record_size = 80;

// A length field of this value is never that of a bare text.
constexpr std::uint32_t impossible_length = 0xFFFFFFFFu;

// What a stack's compression type says; any other is raw in a file.
constexpr std::uint32_t compression_raw = 0;
constexpr std::uint32_t compression_zlib = 1;

// Further fields that are corrected after their record was written, from its start.
constexpr u64 sizes_offset = 24;
constexpr u64 size_offset(u64 axis) { return sizes_offset + 4 * axis; }
constexpr u64 stack_end_offset = 1432;

// The level at which samples are compressed; 0 for raw ones.
inline int deflate_level(const StackHeader& header) {
  return header.compression_type == compression_zlib ? header.compression_level : 0;
}

using FileHeaderBytes = std::array<unsigned char, file_header_size>;
using StackHeaderBytes = std::array<unsigned char, stack_header_size>;
using StackFooterBytes = std::array<unsigned char, stack_footer_size>;

FileHeaderBytes encode(const FileHeader& header);
StackHeaderBytes encode(const StackHeader& header);
StackFooterBytes encode(const StackFooter& footer);

// Headers decode to false, unchanged, where the magic text or the mark behind it differs.
bool decode(const FileHeaderBytes& bytes, FileHeader& header);
bool decode(const StackHeaderBytes& bytes, StackHeader& header);
void decode(const StackFooterBytes& bytes, StackFooter& footer);

// Raises "Tag keys cannot be empty!" (-1).
[[noreturn]] void raise_empty_tag_key();

// The footer of a stack whose sections are those of the record: flags, lengths and counts are taken
// from there, the units from the record's footer. The stack end is not known yet.
StackFooter make_footer(const StackRecord& stack);

// The variable sections behind the footer, in order.
// Raises "Tag keys cannot be empty!" (-1) before anything is written.
void write_sections(VFileAccess& file, const StackRecord& stack);

// Entries in order of their keys, then an empty key. Raises "Tag keys cannot be empty!" (-1) before
// anything is written.
void write_dictionary(VFileAccess& file, const Dictionary& dictionary);

// The length of a text as its field holds it. Raises "String too long!" (-1).
std::uint32_t length_field(std::size_t length);

// Single fields, for the corrections and for what stands alone.
void write_u32(VFileAccess& file, std::uint32_t value);
void write_u64(VFileAccess& file, u64 value);

class ChainSource;

Dictionary read_dictionary(ChainSource& source);
// Fill what stands behind the fixed footer, for a record whose header and footer are set.
void read_sections(ChainSource& source, StackRecord& stack);
u64 read_u64(ChainSource& source);

}  // namespace Vrel::detail
