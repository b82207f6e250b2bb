#include "lib/ome_tiff_units.h"

#include <cmath>

namespace Vrel::tool {

namespace {

struct Row {
  const char* name;
  double factor;
};

// clang-format off
constexpr Row lengths[] = {
    {"m", 1.0},    {"mm", 1e-3},  {"\xC2\xB5m", 1e-6}, {"nm", 1e-9},  {"pm", 1e-12}, {"fm", 1e-15},
    {"am", 1e-18}, {"zm", 1e-21}, {"ym", 1e-24},       {"cm", 1e-2},  {"dm", 1e-1},  {"dam", 1e1},
    {"hm", 1e2},   {"km", 1e3},   {"Mm", 1e6},         {"Gm", 1e9},   {"Tm", 1e12},  {"Pm", 1e15},
    {"Em", 1e18},  {"Zm", 1e21},  {"Ym", 1e24},        {"\xE2\x84\xAB", 1e-10},  // angstrom sign
    {"thou", 2.54e-5}, {"li", 0.0254 / 12}, {"in", 0.0254}, {"ft", 0.3048}, {"yd", 0.9144},
    {"mi", 1609.344},  {"pt", 0.0254 / 72}, {"ua", 149597870700.0}, {"ly", 9460730472580800.0}};

constexpr Row times[] = {
    {"s", 1.0},    {"ms", 1e-3},  {"\xC2\xB5s", 1e-6}, {"ns", 1e-9},  {"ps", 1e-12}, {"fs", 1e-15},
    {"as", 1e-18}, {"zs", 1e-21}, {"ys", 1e-24},       {"cs", 1e-2},  {"ds", 1e-1},  {"das", 1e1},
    {"hs", 1e2},   {"ks", 1e3},   {"Ms", 1e6},         {"Gs", 1e9},   {"Ts", 1e12},  {"Ps", 1e15},
    {"Es", 1e18},  {"Zs", 1e21},  {"Ys", 1e24},        {"min", 60.0}, {"h", 3600.0}, {"d", 86400.0}};
// clang-format on

constexpr Row micrometre = lengths[2];
constexpr Row second = times[0];
constexpr std::size_t metre_exponent = 0;
constexpr std::size_t second_exponent = 2;

// As stored: fractions are not reduced, and a denominator may be 0.
bool is_one(const ExponentRecord& exponent) {
  return exponent.denominator != 0 && exponent.numerator == exponent.denominator;
}

bool has_only(const UnitRecord& unit, std::size_t dimension) {
  for (std::size_t i = 0; i < unit.exponents.size(); ++i) {
    const ExponentRecord& exponent = unit.exponents[i];
    if (i == dimension ? !is_one(exponent) : exponent.numerator != 0) return false;
  }
  return std::isfinite(unit.factor) && unit.factor > 0;
}

// Units count as the same up to what their calculation may have lost.
bool is_same(double a, double b) { return std::abs(a / b - 1) < 1e-9; }

template <std::size_t count>
OmeUnit find(const Row (&rows)[count], double factor, const Row& other) {
  for (const Row& row : rows) {
    if (is_same(factor, row.factor)) return {row.name, 1.0};
  }
  return {other.name, factor / other.factor};
}

}  // namespace

std::optional<OmeUnit> to_ome_length(const UnitRecord& unit) {
  if (!has_only(unit, metre_exponent)) return std::nullopt;
  return find(lengths, unit.factor, micrometre);
}

std::optional<OmeUnit> to_ome_time(const UnitRecord& unit) {
  if (!has_only(unit, second_exponent)) return std::nullopt;
  return find(times, unit.factor, second);
}

}  // namespace Vrel::tool
