// What a VBF file holds, as plain values. Where each field stands in the file: docs/format.md.
#pragma once

#include <vrelio/file/file_access.h>

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Vrel {

/// Most dimensions that a stack of a file can have.
constexpr unsigned max_rank = 15;

/// The newest format version of a file, which this library writes.
constexpr std::uint32_t newest_file_version = 2;
/// The format version of stacks that this library writes, and the newest that it promises to understand.
constexpr std::uint32_t newest_stack_version = 5;
/// Bytes of the fixed footer of a stack, as this library writes it.
constexpr std::uint32_t stack_footer_size = 1444;

/// Fields that get their value after the header around them was written: bytes from its start.
/// @{
constexpr u64 first_stack_offset = 14;   ///< in a file's header
constexpr u64 data_length_offset = 352;  ///< in a stack's header
constexpr u64 next_stack_offset = 360;   ///< in a stack's header
/// @}

/// Keys and values of any bytes, in ascending byte order of the key.
using Dictionary = std::map<std::string, std::string>;

/// A rational exponent as stored; nothing is reduced or checked.
struct ExponentRecord {
  std::int32_t numerator = 0;    ///< as stored
  std::int32_t denominator = 1;  ///< as stored; may be 0
};

/// A physical unit: the product of the base units to their exponents, times the factor. The neutral
/// unit unless set.
struct UnitRecord {
  /// Exponents of metre, kilogram, second, ampere, kelvin, mole, candela, radian, steradian.
  std::array<ExponentRecord, 9> exponents;
  /// Magnitude of the unit in base units.
  double factor = 1.0;
};

/// The fixed part of a file's header.
struct FileHeader {
  std::uint32_t format_version =
      newest_file_version;               ///< 1 has no dictionary; this library writes 2
  u64 first_stack = 0;                   ///< position of the first stack; 0 for none
  std::uint32_t description_length = 0;  ///< in bytes
};

/// The fixed part of a stack's header. Of the arrays the first `rank` entries have a meaning.
struct StackHeader {
  std::uint32_t format_version = newest_stack_version;  ///< 0 has no footer; this library writes 5
  std::uint32_t rank = 0;                       ///< number of dimensions, at most `max_rank`
  std::array<std::uint32_t, max_rank> sizes{};  ///< samples along each dimension, the fastest first
  std::array<double, max_rank> lengths{};       ///< physical length of each dimension, in its unit
  std::array<double, max_rank> offsets{};  ///< physical position of the centre of each dimension
  std::int32_t data_type = 0;              ///< as for `vrel_dt_get_size`
  std::uint32_t compression_type = 0;      ///< 0 raw, 1 zlib
  std::int32_t compression_level = 1;      ///< zlib's; 0 means raw
  std::uint32_t name_length = 0;           ///< in bytes
  std::uint32_t description_length = 0;    ///< in bytes
  std::uint32_t has_data = 1;              ///< 0 if the stack was made empty; written only
  std::uint32_t reserved = 0;              ///< written as 0
  u64 data_length = 0;  ///< stored bytes; 0 until committed, and for a stack that reads as zeros
  u64 next_stack = 0;   ///< position of the next stack; 0 for none
};

/// The fixed part of a stack's footer. What a shorter footer does not reach has the values given
/// here.
struct StackFooter {
  std::uint32_t footer_size = stack_footer_size;  ///< bytes of the fixed footer in the file
  std::array<std::uint32_t, max_rank> has_column_positions{};  ///< not 0 where stored
  std::array<std::uint32_t, max_rank> has_column_labels{};     ///< not 0 where stored
  std::uint32_t metadata_length = 0;                           ///< in bytes
  UnitRecord data_unit;                                        ///< of the sample values
  std::array<UnitRecord, max_rank> units;                      ///< of the dimensions
  u64 flush_point_count = 0;                                   ///< entries of the flush table
  u64 flush_block_size = 0;  ///< bytes of samples between two flush points
  u64 tag_block_size = 0;    ///< in bytes; 0 where no tags are stored, not even none
  u64 stack_end = 0;         ///< 0 where it is not known
  /// All ones: no requirement; this library writes 0.
  std::uint32_t required_reader_version = 0xFFFFFFFFu;

  /// Whether only a newer reader than this library can take the stack.
  bool needs_newer_reader() const {
    constexpr std::uint32_t no_requirement = 0xFFFFFFFFu;
    return required_reader_version != no_requirement &&
           required_reader_version > newest_stack_version;
  }
};

/// One stack with all that stands around its samples, and where in the file things stand.
struct StackRecord {
  StackHeader header;               ///< as stored, but for lengths that are no numbers: 1.0
  StackFooter footer;               ///< as stored, over the defaults
  std::string name;                 ///< any bytes
  std::string description;          ///< any bytes
  std::vector<std::string> labels;  ///< one per dimension
  std::vector<std::vector<double>> column_positions;    ///< per dimension; empty unless stored
  std::vector<std::vector<std::string>> column_labels;  ///< per dimension; empty unless stored
  std::string metadata;                                 ///< XML text; empty for none
  std::vector<u64> flush_positions;                     ///< offsets from `data_position`
  u64 flush_block_size = 0;  ///< 0 without flush positions, whatever the footer says
  Dictionary tags;           ///< empty for none
  u64 stack_position = 0;    ///< of the header
  u64 data_position = 0;     ///< of the first stored byte
  u64 stack_end = 0;         ///< behind the last section

  /// Number of samples: the product of the sizes, 1 at rank 0.
  std::uint32_t number_of_samples = 1;
};

/// One file with its stacks in the order of the chain.
struct FileRecord {
  FileHeader header;            ///< as stored
  std::string description;      ///< any bytes
  u64 dictionary_position = 0;  ///< as stored; 0 at format version 1
  bool has_dictionary = false;  ///< whether a whole one was found
  Dictionary dictionary;        ///< empty for none
  u64 file_position = 0;        ///< of the file header
  u64 dictionary_field_position =
      0;               ///< of the 8 bytes that hold `dictionary_position`; 0 at format version 1
  u64 header_end = 0;  ///< behind the file header
  u64 dictionary_end = 0;           ///< behind the dictionary; 0 without one
  std::vector<StackRecord> stacks;  ///< those in front of a damage, if there was one
};

}  // namespace Vrel
