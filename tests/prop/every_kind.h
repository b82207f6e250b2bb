// The 48 kinds of values, to be gone through at run time. What has to be done by type is done in one file,
// so that loops over kinds cost a test next to nothing to compile.
#pragma once

#include <vrelio/prop/prop.h>

#include <complex>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <typeinfo>
#include <vector>

namespace Vrel::testing {

enum class KindGroup { integer, decimal, logical, complex, other };

struct Kind {
  int id;
  std::string name;  ///< of the element, as errors and XML have it
  KindGroup group;   ///< of the element
  bool is_array;
  const std::type_info* type;
  VProp plain;                        ///< the default value of the type
  VProp sample;                       ///< 1 or (1,2); as an array with a second element of 0
  VProp changed;                      ///< the sample with another last part of its last element
  std::string text;                   ///< of the sample; empty if it has none
  const void* (*read)(const VProp&);  ///< typed access
  void* (*write)(VProp&);             ///< typed access that could change the value

  /// The first of some numbers or, as an array, all; null where the elements are no numbers.
  VProp (*of_numbers)(const std::vector<std::complex<double>>& numbers);
  /// As `of_numbers`, each from two words of bits; not-a-number, which equals nothing, as 0.
  VProp (*of_bits)(const std::vector<std::uint64_t>& bits);

  bool is_numeric() const { return group != KindGroup::other; }
};

/// All 48, those of numbers first.
const std::vector<Kind>& every_kind();
/// The one of an id; there has to be one.
const Kind& kind_of(int id);
/// The 42 of numbers and bools.
std::vector<Kind> every_numeric_kind();

/// As errors name it: with brackets for an array.
std::string full_name(const Kind& kind);
/// For failures: name and id.
std::ostream& operator<<(std::ostream& out, const Kind& kind);

}  // namespace Vrel::testing
