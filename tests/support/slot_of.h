// Where a virtual function stands in the table of its class, which linked programs rely on.
#pragma once

#include <cstddef>
#include <cstring>

namespace Vrel::testing {

// From 0. Each destructor takes two slots.
//
// A pointer to a virtual member begins with the offset of its slot; some processors mark it by 1.
template <class Member>
std::size_t slot_of(Member member) {
  std::size_t offset = 0;
  std::memcpy(&offset, &member, sizeof offset);
  return offset / sizeof(void*);
}

}  // namespace Vrel::testing
