#include "lib/uuid_text.h"

#include <cstdio>
#include <random>

namespace Vrel::tool {

// Version 4, variant 1.
std::string make_uuid() {
  std::random_device random;
  const unsigned a = random(), b = random(), c = random(), d = random();
  char text[37];
  std::snprintf(text, sizeof text, "%08x-%04x-4%03x-%04x-%04x%08x", a, b >> 16, b & 0xFFF,
                (c & 0x3FFF) | 0x8000, c >> 16, d);
  return text;
}

}  // namespace Vrel::tool
