#include "lib/ome_units.h"

#include <cmath>
#include <string_view>

namespace Vrel::tool {

namespace {

struct PrefixRow {
  std::string_view name;
  double factor;
};

// clang-format off
constexpr PrefixRow prefixes[] = {
    {"", 1e0},
    {"Y", 1e24}, {"Z", 1e21}, {"E", 1e18}, {"P", 1e15}, {"T", 1e12}, {"G", 1e9}, {"M", 1e6},
    {"k", 1e3}, {"h", 1e2}, {"da", 1e1}, {"d", 1e-1}, {"c", 1e-2}, {"m", 1e-3},
    {"\xC2\xB5", 1e-6}, {"n", 1e-9}, {"p", 1e-12}, {"f", 1e-15}, {"a", 1e-18}, {"z", 1e-21},
    {"y", 1e-24}};

struct UnitRow {
  std::string_view name;
  char base;
  double factor;
};

constexpr UnitRow units[] = {
    {"\xE2\x84\xAB", 'm', 1e-10},
    {"thou", 'm', 0.0254 / 1000},
    {"li", 'm', 0.0254 / 12},
    {"in", 'm', 0.0254},
    {"ft", 'm', 0.3048},
    {"yd", 'm', 0.9144},
    {"mi", 'm', 1609.344},
    {"ua", 'm', 149597870700.0},
    {"ly", 'm', 9460730472580800.0},
    {"pc", 'm', 3.0856775814913673e16},
    {"pt", 'm', 0.0254 / 72},
    {"min", 's', 60.0},
    {"h", 's', 3600.0},
    {"d", 's', 86400.0}};
// clang-format on

// The place of a base unit among the exponents.
std::size_t dimension_of(char base) { return base == 'm' ? 0 : 2; }

si::value make_unit(char base, double factor) {
  si::exponent_list exponents;
  exponents[dimension_of(base)] = si::fraction(1, 1);
  return {factor, exponents};
}

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

std::string find_name(char base, double factor) {
  for (const PrefixRow& row : prefixes) {
    if (is_same(factor, row.factor)) return std::string(row.name) + base;
  }
  for (const UnitRow& row : units) {
    if (row.base == base && is_same(factor, row.factor)) return std::string(row.name);
  }
  return "";
}

std::optional<OmeUnit> to_ome(const UnitRecord& unit, char base, const OmeUnit& other) {
  if (!has_only(unit, dimension_of(base))) return std::nullopt;
  const std::string name = find_name(base, unit.factor);
  if (!name.empty()) return OmeUnit{name, 1.0};
  return OmeUnit{other.name, unit.factor / other.factor};
}

constexpr std::string_view greek_mu = "\xCE\xBC";

}  // namespace

std::string ome_spelling(const std::string& name) {
  if (name == "\xC3\x85") return "\xE2\x84\xAB";
  if (name.rfind(greek_mu, 0) == 0) return "\xC2\xB5" + name.substr(greek_mu.size());
  return name;
}

std::optional<si::value> ome_unit(const std::string& name) {
  for (const UnitRow& row : units) {
    if (row.name == name) return make_unit(row.base, row.factor);
  }
  if (name.empty() || (name.back() != 'm' && name.back() != 's')) return std::nullopt;
  const std::string_view prefix = std::string_view(name).substr(0, name.size() - 1);
  for (const PrefixRow& row : prefixes) {
    if (row.name == prefix) return make_unit(name.back(), row.factor);
  }
  return std::nullopt;
}

std::optional<OmeUnit> to_ome_length(const UnitRecord& unit) {
  return to_ome(unit, 'm', {"\xC2\xB5m", 1e-6});
}

std::optional<OmeUnit> to_ome_time(const UnitRecord& unit) { return to_ome(unit, 's', {"s", 1.0}); }

}  // namespace Vrel::tool
