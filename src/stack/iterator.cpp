#include <vrelio/stack/iterator.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <cstdint>
#include <cstring>
#include <vector>

#include "foundation/convert_value_internal.h"
#include "foundation/raise_internal.h"
#include "stack/element_strides_internal.h"
#include "stack/readable_data_internal.h"
#include "stack/region_fit_internal.h"
#include "stack/stack_errors_internal.h"

using namespace Vrel::detail;

namespace {

template <class T>
constexpr bool is_complex = false;
template <class T>
constexpr bool is_complex<std::complex<T>> = true;

template <class To, class From>
To convert_element(From value) {
  if constexpr (is_complex<To> && is_complex<From>) {
    using Part = typename To::value_type;
    return To(convert_value<Part>(value.real()), convert_value<Part>(value.imag()));
  } else if constexpr (is_complex<To>) {
    return To(convert_value<typename To::value_type>(value));
  } else if constexpr (is_complex<From>) {
    return convert_value<To>(value.real());
  } else {
    return convert_value<To>(value);
  }
}

template <class T>
T load_element(const unsigned char* pointer) {
  T value;
  std::memcpy(&value, pointer, sizeof value);
  return value;
}

template <class T>
void store_element(unsigned char* pointer, T value) {
  std::memcpy(pointer, &value, sizeof value);
}

}  // namespace

// The arrays lie in one piece: counters, ends, strides.
VStackInterface::iterator_base::iterator_base(const VStackInterface* stack,
                                              const VStackRegion& region) {
  if (region.is_empty()) return;
  const std::vector<unsigned int> sizes = stack->get_sizes();
  const RegionFit fit = fit_region(region, sizes);
  if (!fit.is_inside) raise(id_mode, "Cannot create iterator over region exceeding the stack!");
  rank = static_cast<unsigned int>(fit.sizes.size());
  counters = std::make_unique<unsigned int[]>(std::size_t{3} * rank);
  ends = counters.get() + rank;
  strides = reinterpret_cast<int*>(ends + rank);
  std::copy(fit.sizes.begin(), fit.sizes.end(), ends);
  at_end = stack->get_number_of_elements() == 0 || std::count(ends, ends + rank, 0U) != 0;
  if (at_end) return;
  pointer = const_cast<unsigned char*>(readable_data(*stack));
  const std::vector<std::size_t> all_strides = element_strides(sizes, stack->get_dt());
  for (const AxisFit& axis : fit.axes) {
    const std::size_t stride = all_strides[axis.source_axis];
    // An axis of which more than one index is walked has a stride that an int holds.
    if (axis.is_walked) strides[axis.result_axis] = static_cast<int>(stride);
    pointer += static_cast<std::size_t>(axis.source.from) * stride;
  }
}

VStackInterface::iterator_base::~iterator_base() = default;

template <class T>
VStackInterface::const_iterator<T>::const_iterator(const VStackInterface* stack,
                                                   const VStackRegion& region)
    : iterator_base(stack, region) {
  if (stack->get_dt() != Vrel::prop_id<T>) raise(id_plain, "Invalid iterator type!");
}

template <class T>
VStackInterface::iterator<T>::iterator(VStackInterface* stack, const VStackRegion& region)
    : const_iterator<T>(stack, region) {}

#define VRELIO_DEFINE_ACCESS(type)                                    \
  template <class T>                                                  \
  void VStackInterface::const_iterator<T>::write(type) {              \
    raise(id_plain, "Cannot write through an iterator for reading!"); \
  }                                                                   \
  template <class T>                                                  \
  void VStackInterface::const_iterator<T>::read(type& value) const {  \
    value = convert_element<type>(load_element<T>(this->pointer));    \
  }                                                                   \
  template <class T>                                                  \
  void VStackInterface::iterator<T>::write(type value) {              \
    store_element(this->pointer, convert_element<T>(value));          \
  }
VRELIO_STACK_TYPES(VRELIO_DEFINE_ACCESS)
#undef VRELIO_DEFINE_ACCESS

#define VRELIO_INSTANTIATE(type)                        \
  template class VStackInterface::const_iterator<type>; \
  template class VStackInterface::iterator<type>;
VRELIO_STACK_TYPES(VRELIO_INSTANTIATE)
#undef VRELIO_INSTANTIATE

namespace {

template <template <class> class Iterator, class Stack>
boost::shared_ptr<VStackInterface::iterator_base> make(Stack* stack, const VStackRegion& region) {
  switch (stack->get_dt()) {
#define VRELIO_MAKE(type)   \
  case Vrel::prop_id<type>: \
    return boost::make_shared<Iterator<type>>(stack, region);
    VRELIO_STACK_TYPES(VRELIO_MAKE)
#undef VRELIO_MAKE
    default:
      raise_invalid_element_type();
  }
}

}  // namespace

boost::shared_ptr<VStackInterface::iterator_base> VStackInterface::make_iterator(
    VStackInterface* stack, const VStackRegion& region) {
  return make<iterator>(stack, region);
}

boost::shared_ptr<VStackInterface::iterator_base> VStackInterface::make_iterator(
    const VStackInterface* stack, const VStackRegion& region) {
  return make<const_iterator>(stack, region);
}
