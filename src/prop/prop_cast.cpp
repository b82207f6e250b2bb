#include <vrelio/foundation/convert.h>
#include <vrelio/prop/prop_cast.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <type_traits>

#include "foundation/raise_internal.h"
#include "prop/kind_list_internal.h"
#include "prop/numeric_internal.h"

using namespace Vrel;
using namespace Vrel::detail;

namespace {

using bytes = unsigned char;

[[noreturn]] void raise_invalid_cast() { raise(id_plain, "Invalid cast!"); }

// A complex number has no real one that stands for it.
void check_conversion(int from, int to) {
  if (is_complex(from) && !is_complex(to)) raise_invalid_cast();
}

// Calls with the kind of a single number or bool.
template <class Call>
void with_element(int element, Call call) {
  with_held_kind(element, [&call](auto of) {
    using T = typename decltype(of)::type;
    if constexpr (is_numeric_kind<T> && !is_array(prop_id<T>)) call(of);
  });
}

std::size_t size_of(int element) { return static_cast<std::size_t>(vrel_dt_get_size(element)); }

// To any kind but bool. A bool is a byte that is 0 or 1.
void convert(int from, const bytes* source, int to, bytes* target, std::size_t count) {
  constexpr std::size_t most = 1U << 30;  // an int counts what is converted at once
  const int number = from == id_logical ? id_uint8 : from;
  for (std::size_t done = 0; done < count; done += most) {
    vrel_dt_convert(number, to, source + done * size_of(from), target + done * size_of(to),
                    static_cast<int>(std::min(most, count - done)), nullptr, nullptr);
  }
}

template <class T>
bool is_true(const T& number) {
  return number != T{};
}

// --- From a single value

void convert_scalar(const VProp& source, int to, void* target) {
  const int from = source.get_id();
  if (to == id_logical) {
    with_element(from, [&](auto of) {
      *static_cast<bool*>(target) = is_true(source.get<typename decltype(of)::type>());
    });
  } else {
    convert(from, static_cast<const bytes*>(source.value_ptr()), to, static_cast<bytes*>(target),
            1);
  }
}

void convert_to_first(const VProp& source, int to, void* destination) {
  with_element(to, [&](auto of) {
    using T = typename decltype(of)::type;
    auto& array = *static_cast<VProparray<T>*>(destination);
    if (array.empty()) raise_invalid_cast();
    T element{};
    convert_scalar(source, to, &element);
    array.front() = element;
  });
}

// --- From an array

void take_shape(const VProparrayBase& source, int to, void* destination) {
  with_element(to, [&](auto of) {
    using T = typename decltype(of)::type;
    static_cast<VProparray<T>*>(destination)
        ->set_size(source.get_size(true), VProparrayBase::set_mode_clear);
  });
}

const bytes* elements_of(const VProp& source, int element) {
  const void* data = nullptr;
  with_element(element, [&](auto of) {
    using T = typename decltype(of)::type;
    if constexpr (!std::is_same_v<T, bool>) data = source.get<VProparray<T>>().data();
  });
  return static_cast<const bytes*>(data);
}

bytes* elements_of(void* destination, int element) {
  void* data = nullptr;
  with_element(element, [&](auto of) {
    using T = typename decltype(of)::type;
    if constexpr (!std::is_same_v<T, bool>) data = static_cast<VProparray<T>*>(destination)->data();
  });
  return static_cast<bytes*>(data);
}

void convert_to_bools(const VProp& source, int from, VProparray<bool>& target) {
  with_element(from, [&](auto of) {
    using T = typename decltype(of)::type;
    const auto& elements = source.get<VProparray<T>>();
    std::transform(elements.begin(), elements.end(), target.begin(), is_true<T>);
  });
}

// The bools of an array are bits, which become bytes a block at a time.
void convert_from_bools(const VProparray<bool>& source, int to, bytes* target) {
  std::array<bytes, 4096> block{};
  auto at = source.begin();
  for (std::size_t left = source.size(); left != 0;) {
    const std::size_t count = std::min(left, block.size());
    const auto end = at + static_cast<std::ptrdiff_t>(count);
    std::copy(at, end, block.begin());
    convert(id_uint8, block.data(), to, target, count);
    target += count * size_of(to);
    left -= count;
    at = end;
  }
}

// Intended: the destination has the shape already where the elements cannot be converted;
// PropCastTest.ADestinationKeepsTheShapeThatAFailedCastGaveIt.
void convert_array(const VProp& source, int from, int to, void* destination) {
  if (source.value_ptr() == destination) return;
  const VProparrayBase& shaped = *source.get_arr(true);
  take_shape(shaped, to, destination);
  check_conversion(from, to);
  if (to == id_logical) {
    convert_to_bools(source, from, *static_cast<VProparray<bool>*>(destination));
  } else if (from == id_logical) {
    convert_from_bools(source.get<VProparray<bool>>(), to, elements_of(destination, to));
  } else {
    convert(from, elements_of(source, from), to, elements_of(destination, to), shaped.count());
  }
}

}  // namespace

void vrel_prop_cast(const VProp& source, void* destination, int id) {
  const int from = element_id(source.get_id());
  const int to = element_id(id);
  const bool from_array = is_array(source.get_id());
  if (from_array && !is_array(id)) raise(id_plain, "Cannot cast from array to scalar!");
  if (!is_numeric(from) || !is_numeric(to)) raise_invalid_cast();
  if (from_array) return convert_array(source, from, to, destination);
  check_conversion(from, to);
  if (is_array(id)) return convert_to_first(source, to, destination);
  convert_scalar(source, to, destination);
}
