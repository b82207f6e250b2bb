// The data type ids of complex samples.
#pragma once

namespace Vrel::tool {

/// What such an id has beside that of the real type of its parts.
constexpr int complex_flag = 0x40000000;

}  // namespace Vrel::tool
