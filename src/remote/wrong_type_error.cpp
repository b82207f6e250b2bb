#include "remote/wrong_type_error_internal.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "prop/kind_list_internal.h"

namespace Vrel::detail {

namespace {

struct Row {
  int id;
  const char* word;
};

constexpr int of_array(int id) { return id | array_flag; }

// clang-format off
constexpr Row words[] = {
    {0x1,               "8 bit unsigned integer"},
    {0x2,               "8 bit signed integer"},
    {0x4,               "16 bit unsigned integer"},
    {0x8,               "16 bit signed integer"},
    {0x10,              "32 bit unsigned integer"},
    {0x20,              "32 bit signed integer"},
    {0x40,              "decimal"},
    {0x80,              "decimal"},
    {0x1000,            "64 bit unsigned integer"},
    {0x2000,            "64 bit signed integer"},
    {id_struct,         "structure"},
    {id_logical,        "boolean"},
    {id_text,           "string"},
    {of_array(0x1),     "8 bit unsigned integer array"},
    {of_array(0x2),     "8 bit signed integer array"},
    {of_array(0x4),     "16 bit unsigned integer array"},
    {of_array(0x8),     "16 bit signed integer array"},
    {of_array(0x10),    "32 bit unsigned integer array"},
    {of_array(0x20),    "32 bit signed integer array"},
    {of_array(0x40),    "decimal array"},
    {of_array(0x80),    "decimal array"},
    {of_array(0x1000),  "64 bit unsigned integer array"},
    {of_array(0x2000),  "64 bit signed integer array"},
    {id_cell_array,     "array"},
    {id_struct_array,   "structure array"},
    {of_array(id_logical), "boolean array"},
    {id_text_array,     "string array"},
};
// clang-format on

const char* word_of(int id) {
  const auto* const row = std::find_if(std::begin(words), std::end(words),
                                       [id](const Row& candidate) { return candidate.id == id; });
  return row == std::end(words) ? "unsupported" : row->word;
}

std::string text_of(const VProp& prop) {
  return std::string("Property has ") + word_of(prop.get_id()) + " type";
}

}  // namespace

WrongTypeError::WrongTypeError(const VProp& prop) : std::invalid_argument(text_of(prop)) {}

}  // namespace Vrel::detail
