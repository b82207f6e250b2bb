// The one failure of typed access.
#pragma once

namespace Vrel::detail {

/// \throws VrelError "Type mismatch: found %s%s, expected %s%s" (-1), with the names of both ids and
///   brackets behind that of an array.
[[noreturn]] void raise_type_mismatch(int found, int expected);

}  // namespace Vrel::detail
