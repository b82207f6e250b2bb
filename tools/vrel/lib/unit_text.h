// Physical values as people write them, in UTF-8. docs/units.md has the units and the rules.
#pragma once

#include <vrelio/container/records.h>
#include <vrelio/si/value.h>

#include <optional>
#include <string>
#include <string_view>

namespace Vrel::tool {

/// A number, with up to 15 significant digits, and the unit that it counts.
struct Quantity {
  std::string number;  ///< without zeros at its end; "inf", "-inf" or "nan" where it is none
  std::string unit;    ///< in UTF-8; empty for a plain number
};

/// The value that a text in UTF-8 names, with the micro sign or the Greek letter for micro. Nothing
/// if it names none: any other character outside of ASCII belongs to no unit.
std::optional<si::value> read_value(std::string_view text);

/// The value in the unit, with its SI prefix, that the library chooses for it.
Quantity to_quantity(const si::value& shown);

/// The value as so many of `unit`, which has the same dimensions and goes by `name`.
Quantity to_quantity(const si::value& shown, const si::value& unit, const std::string& name);

/// Number and unit in one line, without line end; nothing in it can harm a terminal.
std::string to_text(const Quantity& quantity);

/// One JSON object on one line, with a line end: "number", "unit", and what `shown` is in base units,
/// as "factor" and "exponents". Numbers that JSON cannot hold are null.
std::string to_json(const Quantity& quantity, const si::value& shown);

/// The product of base units with these exponents, such as "m^2*s^-1"; "1" for none.
std::string to_base_units(const si::exponent_list& exponents);

/// The unit of an axis or of samples: by name and prefix if it is one of the named ones, such as
/// "µm"; else with a number in front, such as "500 nm"; "1" for the neutral unit.
std::string to_text(const UnitRecord& unit);

}  // namespace Vrel::tool
