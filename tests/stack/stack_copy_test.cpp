#include <gtest/gtest.h>
#include <vrelio/foundation/convert.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/stack/region.h>
#include <vrelio/stack/stack_imp.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <random>
#include <stdexcept>
#include <vector>

#include "stack/foreign_stack.h"
#include "stack/raw_stack.h"
#include "stack/region_of.h"
#include "support/expect_error.h"

namespace {

using Bounds = std::vector<int>;
using Bytes = std::vector<unsigned char>;
using Sizes = std::vector<unsigned int>;

constexpr int complex_flag = 0x40000000;

Bytes bytes_of(const VStackImp& stack) {
  return Bytes(stack.get_data_ptr(), stack.get_data_ptr() + stack.get_data_size());
}

// The elements are 1, 2, 3 and so on.
VStackImp numbered(const Sizes& sizes) {
  VStackImp stack(Ome::type_uint8, sizes, Ome::order_XYZTC);
  std::iota(stack.get_data_ptr(), stack.get_data_ptr() + stack.get_data_size(),
            static_cast<unsigned char>(1));
  return stack;
}

Bytes copied(const VStackImp& source, const VStackRegion& region) {
  VStackImp stack(0);
  stack.copy(&source, region);
  return bytes_of(stack);
}

// --- Whole stacks

TEST(StackCopyTest, AWholeStackIsCopiedWithItsDescription) {
  VStackImp source = numbered({2, 3});
  source.set_name("name");
  VStackImp copy(0);
  copy.copy(&source, 0);
  EXPECT_EQ(copy.get_sizes(), (Sizes{2, 3}));
  EXPECT_EQ(copy.get_name(), "name");
  EXPECT_EQ(bytes_of(copy), (Bytes{1, 2, 3, 4, 5, 6}));
}

TEST(StackCopyTest, AnotherTypeKeepsTheOrderOfTheElements) {
  const VStackImp source = numbered({2, 2});
  VStackImp copy(0);
  copy.copy(&source, 64);
  const auto* const elements = reinterpret_cast<const float*>(copy.get_data_ptr());
  EXPECT_EQ(std::vector<float>(elements, elements + 4), (std::vector<float>{1, 2, 3, 4}));
}

TEST(StackCopyTest, OfComplexElementsThatBecomeRealTheRealPartIsTaken) {
  VStackImp source(Ome::type_complex, {2}, Ome::order_XYZTC);
  auto* const parts = reinterpret_cast<float*>(source.get_data_ptr());
  std::iota(parts, parts + 4, 1.0F);
  VStackImp copy(0);
  copy.copy(&source, 1);
  EXPECT_EQ(bytes_of(copy), (Bytes{1, 3}));
}

TEST(StackCopyTest, AStackWithoutAxesIsOneElement) {
  EXPECT_EQ(copied(numbered({}), VStackRegion()), Bytes{1});
}

// --- Regions

TEST(StackCopyTest, WhatLiesOutsideTheStackIsZero) {
  EXPECT_EQ(copied(numbered({2}), region_of({-2}, {3}, {0})), (Bytes{0, 0, 1, 2, 0}));
  EXPECT_EQ(copied(numbered({2, 2}), region_of({-1, 0}, {1, 3}, {1, 0})),
            (Bytes{0, 0, 0, 1, 3, 0}));
}

TEST(StackCopyTest, WhatTheBufferHeldBeforeDoesNotShow) {
  const VStackImp source = numbered({2});
  VStackImp copy = numbered({4});
  copy.copy(&source, region_of({-1}, {3}, {0}));
  EXPECT_EQ(bytes_of(copy), (Bytes{0, 1, 2, 0}));
}

TEST(StackCopyTest, ARegionOutsideTheStackLeavesTheBufferAsItWas) {
  const VStackImp source = numbered({2});
  VStackImp copy = numbered({3});
  copy.copy(&source, region_of({5}, {8}, {0}));
  EXPECT_EQ(bytes_of(copy), (Bytes{1, 2, 3}));
  EXPECT_EQ(copied(source, region_of({5}, {8}, {0})), (Bytes{0, 0, 0}));
}

TEST(StackCopyTest, AnAxisHeldOutsideTheStackLeavesTheBufferAsItWas) {
  const VStackImp source = numbered({2, 3});
  VStackImp copy = numbered({3});
  copy.copy(&source, region_of({-1, 3}, {2, 4}, {0}));
  EXPECT_EQ(bytes_of(copy), (Bytes{1, 2, 3}));
  copy.copy(&source, region_of({0, -1}, {2, 0}, {0}));
  EXPECT_EQ(bytes_of(copy), (Bytes{1, 2}));
}

TEST(StackCopyTest, AnAxisThatTheStackDoesNotHaveAndWithoutItsIndexLeavesTheBufferAsItWas) {
  const VStackImp source = numbered({2});
  VStackImp copy = numbered({3});
  copy.copy(&source, region_of({0, 1}, {2, 3}, {0, 1}));
  EXPECT_EQ(bytes_of(copy), (Bytes{1, 2, 3, 0}));
}

TEST(StackCopyTest, AxesAreExchanged) {
  EXPECT_EQ(copied(numbered({2, 3}), region_of({0, 0}, {2, 3}, {1, 0})), (Bytes{1, 3, 5, 2, 4, 6}));
}

TEST(StackCopyTest, AnAxisThatIsNotNamedIsHeld) {
  EXPECT_EQ(copied(numbered({2, 3}), region_of({0, 2}, {2, 3}, {0})), (Bytes{5, 6}));
  EXPECT_EQ(copied(numbered({2, 3}), region_of({1, 0}, {2, 3}, {1})), (Bytes{2, 4, 6}));
  EXPECT_EQ(copied(numbered({2, 3}), region_of({0}, {2}, {0})), (Bytes{1, 2}));
}

TEST(StackCopyTest, AnAxisThatTheStackDoesNotHaveIsOneIndexLong) {
  EXPECT_EQ(copied(numbered({2}), region_of({0, -1}, {2, 2}, {0, 1})), (Bytes{0, 0, 1, 2, 0, 0}));
}

// --- Where the elements of source and copy are the same

TEST(StackCopyTest, AStackCanBeCopiedFromItself) {
  VStackImp stack = numbered({2, 3});
  const VStackImp other(stack);
  stack.copy(&stack, region_of({0, 0}, {2, 3}, {1, 0}));
  EXPECT_EQ(stack.get_sizes(), (Sizes{3, 2}));
  EXPECT_EQ(bytes_of(stack), (Bytes{1, 3, 5, 2, 4, 6}));
  EXPECT_EQ(bytes_of(other), (Bytes{1, 2, 3, 4, 5, 6}));
}

TEST(StackCopyTest, AStackCanBeCopiedFromOneOnTheSameElements) {
  VStackImp stack = numbered({2, 3});
  const VStackImp other(stack);
  stack.copy(&other, region_of({0, 0}, {2, 3}, {1, 0}));
  EXPECT_EQ(bytes_of(stack), (Bytes{1, 3, 5, 2, 4, 6}));
  EXPECT_EQ(bytes_of(other), (Bytes{1, 2, 3, 4, 5, 6}));
}

TEST(StackCopyTest, ACopyFromItselfThatFailsLosesNoElement) {
  VStackImp stack = numbered({2});
  VStackRegion region = region_of({0}, {2}, {0});
  region.type = 0x1000;
  EXPECT_STANDARD_ERROR(stack.copy(&stack, region), std::invalid_argument, "Unsupported data type");
  EXPECT_EQ(bytes_of(stack), (Bytes{1, 2}));
}

TEST(StackCopyTest, ASharedStackIsASource) {
  const VStackImp source = numbered({2});
  source.share();
  EXPECT_EQ(copied(source, region_of({0}, {2}, {0})), (Bytes{1, 2}));
}

TEST(StackCopyTest, AStackOfAnotherClassIsASource) {
  const ForeignStack source(numbered({2, 3}));
  VStackImp copy(0);
  copy.copy(&source, region_of({0, 1}, {3, 3}, {1, 0}));
  EXPECT_EQ(bytes_of(copy), (Bytes{3, 5, 4, 6, 0, 0}));
}

TEST(StackCopyTest, ALargeStackIsZeroAndCopiedUpToItsLastByte) {
  constexpr std::size_t size = (std::size_t{9} << 20) + 1;
  VStackImp source(Ome::type_uint8, {size}, Ome::order_XYZTC);
  EXPECT_EQ(std::count(source.get_data_ptr(), source.get_data_ptr() + size, 0),
            static_cast<std::ptrdiff_t>(size));
  source.get_data_ptr()[0] = 1;
  source.get_data_ptr()[size - 1] = 2;
  VStackImp copy(0);
  copy.copy(&source, 0);
  EXPECT_EQ(bytes_of(copy), bytes_of(source));
}

// --- Refusals

TEST(StackCopyTest, NothingIsCopiedIntoSharedMemory) {
  const VStackImp source = numbered({2});
  VStackImp stack = numbered({2});
  stack.share();
  EXPECT_STANDARD_ERROR(stack.copy(&source, 0), std::runtime_error, "Cannot resize shared data");
}

TEST(StackCopyTest, ElementsThatAreNoNumbersAreRefused) {
  RawStack source(0x10000, {2});
  VStackImp stack(0);
  EXPECT_VREL_ERROR(stack.copy(&source, 1), "Invalid type!", -1);
}

// Makes itself another size than it is told to.
class Stubborn : public VStackImp {
 public:
  using VStackImp::create;
  using VStackImp::VStackImp;
  void create(const VStackInfoInterface* info, const VStackRegion& region) override {
    VStackImp::create(info, region);
    VStackImp::create(Sizes{7}, 1);
  }
};

TEST(StackCopyTest, SizesOtherThanThoseOfTheRegionAreAnInternalError) {
  const VStackImp source = numbered({2});
  Stubborn stack(0);
  EXPECT_VREL_ERROR(stack.copy(&source, 0), "Internal error!", -1);
}

TEST(StackCopyTest, ASourceWhoseBufferIsTooSmallIsRefused) {
  VStackImp source = numbered({2});
  EXPECT_VREL_ERROR(source.create(Sizes{1U << 30}, 64), "The size increases the maximum size", -1);
  VStackImp stack(0);
  EXPECT_VREL_ERROR(stack.copy(&source, region_of({0}, {5}, {0})), "Internal error!", -1);
}

// --- Against a plain reference

Bytes converted_element(int from, int to, const unsigned char* element) {
  Bytes result(16);
  Bytes imaginary(16);
  const bool splits = (from & complex_flag) != 0 && (to & complex_flag) == 0;
  EXPECT_EQ(vrel_dt_convert(from, to, element, result.data(), 1, nullptr,
                            splits ? imaginary.data() : nullptr),
            0);
  result.resize(static_cast<std::size_t>(vrel_dt_get_size(to)));
  return result;
}

// The index of the source along one axis for a place of the result.
std::int64_t source_index(const VStackRegion& region, const Sizes& place, std::size_t axis) {
  const std::int64_t from = axis < region.from.size() ? region.from[axis] : 0;
  const auto named = std::find(region.permutation.begin(), region.permutation.end(), axis);
  if (named == region.permutation.end()) return from;
  return from + place[static_cast<std::size_t>(named - region.permutation.begin())];
}

// The number of the element that comes to lie at a place, or -1 where there is none.
std::int64_t source_element(const VStackRegion& region, const Sizes& sizes, const Sizes& place) {
  std::int64_t element = 0;
  std::int64_t stride = 1;
  for (std::size_t axis = 0; axis < std::max(sizes.size(), region.from.size()); ++axis) {
    const bool is_named =
        std::count(region.permutation.begin(), region.permutation.end(), axis) > 0;
    if (axis >= sizes.size() && !is_named) continue;
    const std::int64_t size = axis < sizes.size() ? sizes[axis] : 1;
    const std::int64_t index = source_index(region, place, axis);
    if (index < 0 || index >= size) return -1;
    element += index * stride;
    stride *= size;
  }
  return element;
}

Bytes reference(const RawStack& source, const VStackRegion& region, const VStackImp& result) {
  const Sizes sizes = result.get_sizes();
  const auto from_size = static_cast<std::size_t>(vrel_dt_get_size(source.get_dt()));
  const auto to_size = static_cast<std::size_t>(vrel_dt_get_size(result.get_dt()));
  Bytes bytes;
  for (unsigned int i = 0; i < result.get_number_of_elements(); ++i) {
    Sizes place;
    unsigned int rest = i;
    for (const unsigned int size : sizes) {
      place.push_back(rest % size);
      rest /= size;
    }
    const std::int64_t element = source_element(region, source.get_sizes(), place);
    const Bytes converted =
        element < 0 ? Bytes(to_size)
                    : converted_element(
                          source.get_dt(), result.get_dt(),
                          source.get_data_ptr() + static_cast<std::size_t>(element) * from_size);
    bytes.insert(bytes.end(), converted.begin(), converted.end());
  }
  return bytes;
}

class RandomCase {
 public:
  explicit RandomCase(unsigned int seed) : random_(seed) {}

  int between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

  RawStack stack() {
    Sizes sizes;
    const int rank = between(0, 5);
    for (int axis = 0; axis < rank; ++axis)
      sizes.push_back(static_cast<unsigned int>(between(axis == 0 ? 1 : 0, 4)));
    const std::vector<int> types = element_types();
    RawStack made(types[static_cast<std::size_t>(between(0, 19))], sizes);
    for (unsigned char& byte : made.bytes()) byte = static_cast<unsigned char>(between(0, 255));
    return made;
  }

  VStackRegion region(const Sizes& sizes) {
    VStackRegion made;
    const int rank = between(0, 5);
    for (int axis = 0; axis < rank; ++axis) {
      const bool exists = static_cast<std::size_t>(axis) < sizes.size();
      add_axis(made, exists ? static_cast<int>(sizes[static_cast<std::size_t>(axis)]) : 1);
    }
    std::shuffle(made.permutation.begin(), made.permutation.end(), random_);
    if (between(0, 2) == 0) made.permutation.resize(made.permutation.size() / 2);
    made.type = pixel_type();
    return made;
  }

 private:
  // Mostly the whole axis or a part, else something about it.
  void add_axis(VStackRegion& made, int size) {
    made.permutation.push_back(static_cast<unsigned int>(made.from.size()));
    const int kind = between(0, 9);
    made.from.push_back(kind < 4 ? 0 : kind < 7 ? between(0, size) : between(-3, size + 2));
    made.to.push_back(kind < 4              ? size
                      : kind == 4           ? VStackRegion::end_of_axis
                      : between(0, 40) == 0 ? made.from.back() - 1
                                            : made.from.back() + between(0, 4));
  }

  int pixel_type() {
    const std::vector<int> types = {1, 2, 4, 8, 0x10, 0x20, 64, 128, 0x40000040, 0x40000080};
    return types[static_cast<std::size_t>(between(0, 9))];
  }

  std::mt19937 random_;
};

bool is_refused(const VStackRegion& region, const Sizes& sizes) {
  for (std::size_t axis = 0; axis < region.from.size(); ++axis) {
    const bool ends = region.to[axis] == VStackRegion::end_of_axis;
    const int end = !ends                 ? region.to[axis]
                    : axis < sizes.size() ? static_cast<int>(sizes[axis])
                                          : region.from[axis] + 1;
    if (end < region.from[axis]) return true;
  }
  return false;
}

TEST(StackCopyTest, ACopyIsThatOfAPlainLoop) {
  constexpr unsigned int cases = 10000;
  for (unsigned int seed = 0; seed < cases && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomCase random(seed);
    const RawStack source = random.stack();
    const VStackRegion region = random.region(source.get_sizes());
    VStackImp copy(0);
    if (is_refused(region, source.get_sizes())) {
      EXPECT_VREL_ERROR(copy.copy(&source, region), "Called on invalid region!", -1);
    } else {
      copy.copy(&source, region);
      EXPECT_EQ(bytes_of(copy), reference(source, region, copy));
    }
  }
}

TEST(StackCopyTest, AWholeCopyIsThatOfAPlainLoopForAllTypes) {
  for (const int from : element_types()) {
    for (const int to : {1, 2, 4, 8, 0x10, 0x20, 64, 128, 0x40000040, 0x40000080}) {
      SCOPED_TRACE(std::to_string(from) + " to " + std::to_string(to));
      RawStack source(from, {5, 3});
      std::iota(source.bytes().begin(), source.bytes().end(), static_cast<unsigned char>(0));
      VStackRegion region;
      region.create(&source, to);
      VStackImp copy(0);
      copy.copy(&source, to);
      EXPECT_EQ(bytes_of(copy), reference(source, region, copy));
    }
  }
}

}  // namespace
