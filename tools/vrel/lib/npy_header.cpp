#include "lib/npy_header.h"

#include <vrelio/foundation/error.h>

#include "lib/complex_type.h"

namespace Vrel::tool {

namespace {

struct Row {
  int data_type;
  const char* descriptor;
};

constexpr Row rows[] = {
    {1, "'|u1'"},
    {2, "'|i1'"},
    {4, "'<u2'"},
    {8, "'<i2'"},
    {16, "'<u4'"},
    {32, "'<i4'"},
    {64, "'<f4'"},
    {128, "'<f8'"},
    {1024, "[('r', '|u1'), ('g', '|u1'), ('b', '|u1')]"},
    {2048, "'<u4'"},
    {4096, "'<u8'"},
    {8192, "'<i8'"},
    {0x10000, "'|b1'"},
    {complex_flag | 1, "[('re', '|u1'), ('im', '|u1')]"},
    {complex_flag | 2, "[('re', '|i1'), ('im', '|i1')]"},
    {complex_flag | 4, "[('re', '<u2'), ('im', '<u2')]"},
    {complex_flag | 8, "[('re', '<i2'), ('im', '<i2')]"},
    {complex_flag | 16, "[('re', '<u4'), ('im', '<u4')]"},
    {complex_flag | 32, "[('re', '<i4'), ('im', '<i4')]"},
    {complex_flag | 64, "'<c8'"},
    {complex_flag | 128, "'<c16'"},
    {complex_flag | 4096, "[('re', '<u8'), ('im', '<u8')]"},
    {complex_flag | 8192, "[('re', '<i8'), ('im', '<i8')]"},
};

std::string type_descriptor(int data_type) {
  for (const Row& row : rows) {
    if (row.data_type == data_type) return row.descriptor;
  }
  throw VrelError(VrelError()("No .npy type for data type %d!", data_type)(-5));
}

// A tuple that lists the slowest axis first; a comma behind every entry makes one of a single entry
// a tuple too.
std::string shape_text(const std::vector<std::uint64_t>& sizes) {
  std::string text = "(";
  for (auto size = sizes.rbegin(); size != sizes.rend(); ++size) {
    text += std::to_string(*size) + ", ";
  }
  return text + ')';
}

std::string preamble(std::size_t dictionary_size) {
  std::string text("\x93NUMPY\x01\x00", 8);
  text += static_cast<char>(dictionary_size & 0xFF);
  text += static_cast<char>((dictionary_size >> 8) & 0xFF);
  return text;
}

}  // namespace

std::string npy_header(int data_type, const std::vector<std::uint64_t>& sizes) {
  constexpr std::size_t alignment = 64;
  std::string dictionary = "{'descr': " + type_descriptor(data_type) +
                           ", 'fortran_order': False, 'shape': " + shape_text(sizes) + ", }";
  const std::size_t preamble_size = preamble(0).size();
  const std::size_t unpadded_size = preamble_size + dictionary.size() + 1;
  dictionary.append((alignment - unpadded_size % alignment) % alignment, ' ');
  dictionary += '\n';
  return preamble(dictionary.size()) + dictionary;
}

}  // namespace Vrel::tool
