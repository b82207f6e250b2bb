// Physical values.
#include <vrelio/vrelio.h>

#include <cmath>
#include <string>

#include "exports.h"

namespace {

bool use_fraction() {
  si::fraction exponent(2, 4);
  exponent += si::fraction(1);
  si::fraction read;
  return exponent == si::fraction(3, 2) && read.parse("(3/2)") && read == exponent;
}

bool use_value() {
  si::value area(std::string("10 nm"));
  const double angstroms = area.in("angstrom");
  area *= area;
  si::value side = area ^ si::fraction(1, 2);
  return std::abs(angstroms - 100.0) < 1e-9 && side == si::value(1e-8, {1}) &&
         side.format(2, si::format_prefix | si::format_separate) == "10 nm" &&
         !(side + area).is_valid();
}

}  // namespace

std::vector<Export> si_exports() {
  return {{"si::fraction", use_fraction}, {"si::value", use_value}};
}
