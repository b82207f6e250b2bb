#include "si/unit_table_internal.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>

namespace si::detail {
namespace {

struct unit_row {
  const char* name;
  double factor;  // magnitude in base units
  std::array<int, dimension_count> exponents;
  int min_exp;
  int max_exp;
};

// The first nine rows are the base units by dimension. The first row that matches wins: "Bq" stands
// twice, and s^-1 is written as "Hz".
// clang-format off
constexpr unit_row unit_rows[] = {
    // name      factor                  m   kg    s    A    K  mol   cd  rad   sr    min  max
    {"m",        1,                    { 1,   0,   0,   0,   0,   0,   0,   0,   0},  -24,   3},
    {"kg",       1,                    { 0,   1,   0,   0,   0,   0,   0,   0,   0},    0,   0},
    {"s",        1,                    { 0,   0,   1,   0,   0,   0,   0,   0,   0},  -24,   0},
    {"A",        1,                    { 0,   0,   0,   1,   0,   0,   0,   0,   0},  -24,  24},
    {"K",        1,                    { 0,   0,   0,   0,   1,   0,   0,   0,   0},  -24,   0},
    {"mol",      1,                    { 0,   0,   0,   0,   0,   1,   0,   0,   0},  -24,   0},
    {"cd",       1,                    { 0,   0,   0,   0,   0,   0,   1,   0,   0},  -24,  24},
    {"rad",      1,                    { 0,   0,   0,   0,   0,   0,   0,   1,   0},   -3,   0},
    {"sr",       1,                    { 0,   0,   0,   0,   0,   0,   0,   0,   1},    0,   0},
    {"",         1,                    { 0,   0,   0,   0,   0,   0,   0,   0,   0},  -24,  24},
    {"Hz",       1,                    { 0,   0,  -1,   0,   0,   0,   0,   0,   0},  -24,  24},
    {"N",        1,                    { 1,   1,  -2,   0,   0,   0,   0,   0,   0},  -24,  24},
    {"Pa",       1,                    {-1,   1,  -2,   0,   0,   0,   0,   0,   0},  -24,  24},
    {"J",        1,                    { 2,   1,  -2,   0,   0,   0,   0,   0,   0},  -24,  24},
    {"W",        1,                    { 2,   1,  -3,   0,   0,   0,   0,   0,   0},  -24,  24},
    {"C",        1,                    { 0,   0,   1,   1,   0,   0,   0,   0,   0},  -24,  24},
    {"V",        1,                    { 2,   1,  -3,  -1,   0,   0,   0,   0,   0},  -24,  24},
    {"F",        1,                    {-2,  -1,   4,   2,   0,   0,   0,   0,   0},  -24,  24},
    {"ohm",      1,                    { 2,   1,  -3,  -2,   0,   0,   0,   0,   0},  -24,  24},
    {"S",        1,                    {-2,  -1,   3,   2,   0,   0,   0,   0,   0},  -24,  24},
    {"Wb",       1,                    { 2,   1,  -2,  -1,   0,   0,   0,   0,   0},  -24,  24},
    {"T",        1,                    { 0,   1,  -2,  -1,   0,   0,   0,   0,   0},  -24,  24},
    {"H",        1,                    { 2,   1,  -2,  -2,   0,   0,   0,   0,   0},  -24,  24},
    {"lm",       1,                    { 0,   0,   0,   0,   0,   0,   1,   0,   1},  -24,  24},
    {"lux",      1,                    {-2,   0,   0,   0,   0,   0,   1,   0,   1},  -24,  24},
    {"Bq",       1,                    { 0,   0,  -1,   0,   0,   0,   0,   0,   0},  -24,  24},
    {"Gy",       1,                    { 2,   0,  -2,   0,   0,   0,   0,   0,   0},  -24,  24},
    {"g",        0.001,                { 0,   1,   0,   0,   0,   0,   0,   0,   0},  -24,   3},
    {"t",        1000,                 { 0,   1,   0,   0,   0,   0,   0,   0,   0},    0,  24},
    {"deg",      0.017453292519943295, { 0,   0,   0,   0,   0,   0,   0,   1,   0},    0,   0},
    {"pc",       3.0856775807e16,      { 1,   0,   0,   0,   0,   0,   0,   0,   0},  -24,  24},
    {"angstrom", 1e-10,                { 1,   0,   0,   0,   0,   0,   0,   0,   0},    0,   0},
    {"fermi",    1e-15,                { 1,   0,   0,   0,   0,   0,   0,   0,   0},    0,   0},
    {"barn",     1e-28,                { 2,   0,   0,   0,   0,   0,   0,   0,   0},    0,   0},
    {"h",        3600,                 { 0,   0,   1,   0,   0,   0,   0,   0,   0},    0,   0},
    {"e",        1.60217733e-19,       { 0,   0,   1,   1,   0,   0,   0,   0,   0},    0,   0},
    {"eV",       1.60217733e-19,       { 2,   1,  -2,   0,   0,   0,   0,   0,   0},  -24,  24},
    {"bar",      100000,               {-1,   1,  -2,   0,   0,   0,   0,   0,   0},  -24,  24},
    {"G",        0.0001,               { 0,   1,  -2,  -1,   0,   0,   0,   0,   0},  -24,  24},
    {"Bq",       1,                    { 0,   0,  -1,   0,   0,   0,   0,   0,   0},  -24,  24},
    {"Ci",       3.7e10,               { 0,   0,  -1,   0,   0,   0,   0,   0,   0},  -24,  24},
};
// clang-format on

struct prefix_row {
  int exponent;
  const char* written;
  std::string_view read;  // any of these characters
};

// Intended: "a" is written but not read; ParseTest.ThePrefixForAttoIsNotRead.
// clang-format off
constexpr prefix_row prefix_rows[] = {
    {-24, "y",    "y"},
    {-21, "z",    "z"},
    {-18, "a",    ""},
    {-15, "f",    "f"},
    {-12, "p",    "p"},
    { -9, "n",    "n"},
    { -6, "\xB5", "\xB5u"},
    { -3, "m",    "m"},
    { -2, "c",    "c"},
    { -1, "d",    "d"},
    {  0, "",     ""},
    {  2, "h",    "h"},
    {  3, "k",    "k"},
    {  6, "M",    "M"},
    {  9, "G",    "G"},
    { 12, "T",    "T"},
    { 15, "P",    "P"},
    { 18, "E",    "E"},
    { 21, "Z",    "Z"},
    { 24, "Y",    "Y"},
};
// clang-format on

unit unit_of(const unit_row& row) {
  exponent_list exponents;
  std::copy(row.exponents.begin(), row.exponents.end(), exponents.begin());
  return {value(row.factor, exponents), row.min_exp, row.max_exp, row.name};
}

std::vector<unit> build_table() {
  std::vector<unit> table;
  table.reserve(std::size(unit_rows));
  for (const unit_row& row : unit_rows) table.push_back(unit_of(row));
  return table;
}

}  // namespace

// A static of a function is built once, by whichever thread comes first, and never changes then.
const std::vector<unit>& unit_table() {
  static const std::vector<unit> table = build_table();
  return table;
}

const unit* find_unit(std::string_view name) {
  for (const unit& row : unit_table()) {
    if (row.name == name) return &row;
  }
  return nullptr;
}

int read_prefix(char character) {
  for (const prefix_row& row : prefix_rows) {
    if (row.read.find(character) != std::string_view::npos) return row.exponent;
  }
  return no_prefix;
}

const char* written_prefix(int exponent) {
  for (const prefix_row& row : prefix_rows) {
    if (row.exponent == exponent) return row.written;
  }
  return "\x80";
}

double power_of_ten(int exponent) {
  double power = 1.0;
  double square = 10.0;
  for (int rest = std::abs(exponent); rest != 0; rest /= 2) {
    if (rest % 2 != 0) power *= square;
    square *= square;
  }
  return exponent < 0 ? 1.0 / power : power;
}

}  // namespace si::detail
