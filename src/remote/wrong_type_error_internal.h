// The failure of values that do not go with the kind of a property.
#pragma once

#include <vrelio/prop/prop.h>

#include <stdexcept>

namespace Vrel::detail {

/// "Property has WORD type", with the words of the kind.
class WrongTypeError : public std::invalid_argument {
 public:
  explicit WrongTypeError(const VProp& prop);
};

}  // namespace Vrel::detail
