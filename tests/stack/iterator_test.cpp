#include <gtest/gtest.h>
#include <vrelio/foundation/convert.h>
#include <vrelio/stack/iterator.h>
#include <vrelio/stack/stack_imp.h>

#include <complex>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <vector>

#include "stack/raw_stack.h"
#include "stack/region_of.h"
#include "support/expect_error.h"

namespace {

using Bounds = std::vector<int>;
using Sizes = std::vector<unsigned int>;
using Numbers = std::vector<int>;

VStackRegion whole_of(const VStackInterface& stack) {
  VStackRegion region;
  region.create(&stack, 0);
  return region;
}

// The elements are 0, 1, 2 and so on.
VStackImp numbered(const Sizes& sizes) {
  VStackImp stack(Ome::type_uint16, sizes, Ome::order_XYZTC);
  auto* const elements = reinterpret_cast<unsigned short*>(stack.get_data_ptr());
  std::iota(elements, elements + stack.get_number_of_elements(), static_cast<unsigned short>(0));
  return stack;
}

Numbers walk(const VStackInterface& stack, const VStackRegion& region) {
  Numbers visited;
  const auto it = VStackInterface::make_iterator(&stack, region);
  for (; !it->at_end; it->advance()) {
    int value = -1;
    it->read(value);
    visited.push_back(value);
  }
  return visited;
}

// --- Walking

TEST(StackIteratorTest, AWholeStackIsWalkedInTheOrderOfItsBuffer) {
  const VStackImp stack = numbered({2, 3});
  EXPECT_EQ(walk(stack, whole_of(stack)), (Numbers{0, 1, 2, 3, 4, 5}));
}

TEST(StackIteratorTest, ThePermutationGivesTheOrder) {
  const VStackImp stack = numbered({2, 3});
  VStackRegion region = whole_of(stack);
  region.permutation = {1, 0};
  EXPECT_EQ(walk(stack, region), (Numbers{0, 2, 4, 1, 3, 5}));
}

TEST(StackIteratorTest, ARegionIsWalkedAlone) {
  const VStackImp stack = numbered({4, 3});
  EXPECT_EQ(walk(stack, region_of({1, 1}, {3, 3}, {0, 1})), (Numbers{5, 6, 9, 10}));
  EXPECT_EQ(walk(stack, region_of({1, 1}, {3, 3}, {1, 0})), (Numbers{5, 9, 6, 10}));
  EXPECT_EQ(walk(stack, region_of({2, 0}, {VStackRegion::end_of_axis, 1}, {0, 1})),
            (Numbers{2, 3}));
}

TEST(StackIteratorTest, AllAxesBeforeTheOneThatGoesOnBeginAgain) {
  const VStackImp stack = numbered({2, 3, 2});
  EXPECT_EQ(walk(stack, region_of({0, 1, 0}, {2, 3, 2}, {1, 2, 0})),
            (Numbers{2, 4, 8, 10, 3, 5, 9, 11}));
}

TEST(StackIteratorTest, AnAxisThatIsNotNamedIsHeld) {
  const VStackImp stack = numbered({2, 3});
  EXPECT_EQ(walk(stack, region_of({0, 2}, {2, 3}, {0})), (Numbers{4, 5}));
  EXPECT_EQ(walk(stack, region_of({1, 0}, {2, 3}, {1})), (Numbers{1, 3, 5}));
  EXPECT_EQ(walk(stack, region_of({0}, {2}, {0})), (Numbers{0, 1}));
}

TEST(StackIteratorTest, AnAxisThatIsHeldOutsideIsHeldAtTheBeginning) {
  const VStackImp stack = numbered({2, 3});
  for (const int index : {-1, 3, 1000000000})
    EXPECT_EQ(walk(stack, region_of({0, index}, {2, index + 1}, {0})), (Numbers{0, 1})) << index;
}

TEST(StackIteratorTest, AnEmptyRegionIsAtItsEndAtOnce) {
  const VStackImp stack = numbered({2, 3});
  EXPECT_TRUE(walk(stack, region_of({1, 0}, {1, 3}, {0, 1})).empty());
  EXPECT_TRUE(walk(stack, region_of({2, 0}, {VStackRegion::end_of_axis, 3}, {0, 1})).empty());
  // Not even where the region is no region of the stack.
  EXPECT_TRUE(walk(stack, region_of({9}, {9}, {7})).empty());
}

TEST(StackIteratorTest, AStackWithoutElementsIsAtItsEndAtOnce) {
  VStackImp stack(2);
  stack.create(Sizes{2, 0}, 4);
  const int end = VStackRegion::end_of_axis;
  EXPECT_TRUE(walk(stack, whole_of(stack)).empty());
  EXPECT_TRUE(walk(stack, region_of({0, 0}, {2, end}, {0, 1})).empty());
  EXPECT_TRUE(walk(stack, region_of({0}, {2}, {0})).empty());
  EXPECT_TRUE(walk(stack, region_of({}, {}, {})).empty());
}

TEST(StackIteratorTest, ARegionWithoutAxesHasOneElementAndNoEnd) {
  const VStackImp stack = numbered({2});
  const auto it = VStackInterface::make_iterator(&stack, region_of({1}, {2}, {}));
  EXPECT_EQ(it->rank, 0U);
  for (int i = 0; i < 3; ++i) {
    int value = 0;
    it->read(value);
    EXPECT_EQ(value, 1);
    EXPECT_FALSE(it->at_end);
    it->advance();
  }
}

TEST(StackIteratorTest, TheEndLeavesTheLastElement) {
  const VStackImp stack = numbered({2, 2});
  const auto it = VStackInterface::make_iterator(&stack, whole_of(stack));
  for (int i = 0; i < 4; ++i) it->advance();
  EXPECT_TRUE(it->at_end);
  EXPECT_EQ(it->pointer, stack.get_data_ptr() + 4);
  EXPECT_EQ(it->counters[1], 2U);
}

TEST(StackIteratorTest, CountsAndStridesAreThoseOfTheWalkedAxes) {
  const VStackImp stack = numbered({4, 3, 2});
  const auto it = VStackInterface::make_iterator(&stack, region_of({1, 1, 0}, {3, 2, 2}, {2, 0}));
  EXPECT_EQ(it->rank, 2U);
  EXPECT_EQ((Sizes{it->ends[0], it->ends[1]}), (Sizes{2, 2}));
  EXPECT_EQ((Numbers{it->strides[0], it->strides[1]}), (Numbers{24, 2}));
  EXPECT_EQ(it->pointer, stack.get_data_ptr() + 2 * (1 + 4));
}

// --- Refusals

TEST(StackIteratorTest, ARegionPartlyOutsideTheStackIsRefused) {
  const VStackImp stack = numbered({2, 3});
  for (const VStackRegion& region :
       {region_of({-1, 0}, {1, 1}, {0, 1}), region_of({0, 0}, {2, 4}, {0, 1}),
        region_of({0, 0, 0}, {2, 3, 1}, {0, 1, 2})})
    EXPECT_VREL_ERROR(VStackInterface::make_iterator(&stack, region),
                      "Cannot create iterator over region exceeding the stack!", -15);
}

TEST(StackIteratorTest, AnInvalidRegionIsRefused) {
  const VStackImp stack = numbered({2});
  EXPECT_VREL_ERROR(VStackInterface::make_iterator(&stack, region_of({0}, {1}, {0, 0})),
                    "Invalid permutation!", -15);
}

TEST(StackIteratorTest, AnIteratorIsForElementsOfItsOwnType) {
  VStackImp stack(Ome::type_double, {2}, Ome::order_XYZTC);
  EXPECT_VREL_ERROR(VStackInterface::iterator<float>(&stack, whole_of(stack)),
                    "Invalid iterator type!", -1);
  EXPECT_VREL_ERROR(VStackInterface::const_iterator<std::complex<double>>(&stack, whole_of(stack)),
                    "Invalid iterator type!", -1);
  EXPECT_VREL_ERROR(VStackInterface::iterator<float>(&stack, region_of({1}, {1}, {0})),
                    "Invalid iterator type!", -1);
}

TEST(StackIteratorTest, ThereIsNoIteratorOfWhatIsNoNumber) {
  for (const int type : {0, 0x400, 0x800, 0x4000, 0x10000}) {
    RawStack stack(type, {});
    EXPECT_VREL_ERROR(VStackInterface::make_iterator(&stack, VStackRegion()), "Invalid type!", -1);
    const VStackInterface* const constant = &stack;
    EXPECT_VREL_ERROR(VStackInterface::make_iterator(constant, VStackRegion()), "Invalid type!",
                      -1);
  }
}

TEST(StackIteratorTest, AnIteratorForReadingDoesNotWrite) {
  const VStackImp stack = numbered({2});
  const auto it = VStackInterface::make_iterator(&stack, whole_of(stack));
  EXPECT_VREL_ERROR(it->write(5), "Cannot write through an iterator for reading!", -1);
  EXPECT_VREL_ERROR(it->write(std::complex<float>(5)),
                    "Cannot write through an iterator for reading!", -1);
}

TEST(StackIteratorTest, AStackWhoseBufferIsTooSmallIsRefused) {
  VStackImp stack(Ome::type_uint16, {2}, Ome::order_XYZTC);
  stack.share();
  EXPECT_THROW(stack.create(Sizes{1000}, 4), std::runtime_error);
  EXPECT_VREL_ERROR(VStackInterface::make_iterator(&stack, whole_of(stack)), "Internal error!", -1);
}

// --- Elements

TEST(StackIteratorTest, AWrittenComplexValueLeavesItsRealPartInARealElement) {
  VStackImp stack(Ome::type_float, {1}, Ome::order_XYZTC);
  VStackInterface::iterator<float> it(&stack, whole_of(stack));
  it.write(std::complex<float>(2.5F, 7));
  float value = 0;
  it.read(value);
  EXPECT_EQ(value, 2.5F);
}

TEST(StackIteratorTest, AWrittenRealValueHasNoImaginaryPart) {
  VStackImp stack(Ome::type_complex, {1}, Ome::order_XYZTC);
  VStackInterface::iterator<std::complex<float>> it(&stack, whole_of(stack));
  it.write(std::complex<double>(1, 2));
  it.write(5);
  std::complex<int> value;
  it.read(value);
  EXPECT_EQ(value, std::complex<int>(5, 0));
}

TEST(StackIteratorTest, OtherNamesOfIntegersAreTheirTypes) {
  VStackImp stack(Ome::type_double, {1}, Ome::order_XYZTC);
  const auto it = VStackInterface::make_iterator(&stack, whole_of(stack));
  it->write(std::int64_t{-5});
  std::int64_t wide = 0;
  it->read(wide);
  EXPECT_EQ(wide, -5);
  it->write(static_cast<signed char>(7));
  long value = 0;
  it->read(value);
  EXPECT_EQ(value, 7);
}

// Two elements: 1.75 + 200i and -3.5 - 4i, as far as a type holds them.
std::vector<std::complex<double>> samples() { return {{1.75, 200}, {-3.5, -4}}; }

// The bytes of elements that were converted to another type; of complex ones that become real, the real
// parts.
std::vector<unsigned char> converted(int from, int to, const std::vector<unsigned char>& bytes) {
  const auto size = [](int type) { return static_cast<std::size_t>(vrel_dt_get_size(type)); };
  const std::size_t count = bytes.size() / size(from);
  std::vector<unsigned char> result(count * size(to));
  std::vector<unsigned char> imaginary(result.size());
  const bool splits = (from & 0x40000000) != 0 && (to & 0x40000000) == 0;
  EXPECT_EQ(vrel_dt_convert(from, to, bytes.data(), result.data(), static_cast<int>(count), nullptr,
                            splits ? imaginary.data() : nullptr),
            0);
  return result;
}

std::vector<unsigned char> sample_bytes(int type) {
  const auto values = samples();
  std::vector<unsigned char> bytes(values.size() * sizeof values[0]);
  std::memcpy(bytes.data(), values.data(), bytes.size());
  return converted(0x40000080, type, bytes);
}

template <class T>
std::vector<unsigned char> read_all(VStackInterface& stack) {
  std::vector<unsigned char> bytes;
  for (const auto it = VStackInterface::make_iterator(&stack, whole_of(stack)); !it->at_end;
       it->advance()) {
    T value;
    it->read(value);
    const auto* const begin = reinterpret_cast<const unsigned char*>(&value);
    bytes.insert(bytes.end(), begin, begin + sizeof value);
  }
  return bytes;
}

template <class T>
void write_all(VStackInterface& stack, const std::vector<unsigned char>& bytes) {
  const unsigned char* next = bytes.data();
  for (const auto it = VStackInterface::make_iterator(&stack, whole_of(stack)); !it->at_end;
       it->advance()) {
    T value;
    std::memcpy(&value, next, sizeof value);
    next += sizeof value;
    it->write(value);
  }
}

template <class T>
void expect_converting_as_arrays(int type) {
  SCOPED_TRACE(vrel_dt_get_name(Vrel::prop_id<T>));
  RawStack stack(type, {2});
  stack.bytes() = sample_bytes(type);
  EXPECT_EQ(read_all<T>(stack), converted(type, Vrel::prop_id<T>, stack.bytes()));
  const std::vector<unsigned char> written = sample_bytes(Vrel::prop_id<T>);
  write_all<T>(stack, written);
  EXPECT_EQ(stack.bytes(), converted(Vrel::prop_id<T>, type, written));
}

TEST(StackIteratorTest, EveryTypeIsReadAndWrittenAsEveryOther) {
  for (const int type : element_types()) {
    SCOPED_TRACE(vrel_dt_get_name(type));
#define EXPECT_TYPE(T) expect_converting_as_arrays<T>(type);
    VRELIO_STACK_TYPES(EXPECT_TYPE)
#undef EXPECT_TYPE
  }
}

TEST(StackIteratorTest, EveryTypeHasAnIteratorOfItsOwn) {
#define EXPECT_ITERATOR(T)                                                                \
  {                                                                                       \
    RawStack stack(Vrel::prop_id<T>, {2});                                                \
    stack.bytes() = sample_bytes(Vrel::prop_id<T>);                                       \
    const VStackInterface::const_iterator<T> it(&stack, whole_of(stack));                 \
    T value;                                                                              \
    it.read(value);                                                                       \
    EXPECT_EQ(0, std::memcmp(&value, stack.bytes().data(), sizeof value));                \
    const auto made = VStackInterface::make_iterator(&stack, whole_of(stack));            \
    EXPECT_NE(dynamic_cast<VStackInterface::iterator<T>*>(made.get()), nullptr);          \
    const VStackInterface* const constant = &stack;                                       \
    const auto reading = VStackInterface::make_iterator(constant, whole_of(stack));       \
    EXPECT_NE(dynamic_cast<VStackInterface::const_iterator<T>*>(reading.get()), nullptr); \
    EXPECT_EQ(dynamic_cast<VStackInterface::iterator<T>*>(reading.get()), nullptr);       \
  }
  VRELIO_STACK_TYPES(EXPECT_ITERATOR)
#undef EXPECT_ITERATOR
}

}  // namespace
