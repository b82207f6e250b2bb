#include "stack/copy_box_internal.h"

#include <gtest/gtest.h>
#include <vrelio/foundation/convert.h>
#include <vrelio/foundation/data_type.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Vrel::detail::BoxAxis;
using Vrel::detail::copy_box;
using Bytes = std::vector<unsigned char>;

constexpr int complex_flag = 0x40000000;
constexpr int real_types[] = {1, 2, 4, 8, 16, 32, 64, 128, 4096, 8192};
constexpr unsigned char guard = 0xA5;

bool is_complex(int type) { return (type & complex_flag) != 0; }

std::vector<int> numeric_types() {
  std::vector<int> types(std::begin(real_types), std::end(real_types));
  for (const int type : real_types) types.push_back(type | complex_flag);
  return types;
}

std::ptrdiff_t size_of(int type) { return vrel_dt_get_size(type); }

// A box, the places where it begins in its buffers, and how large they are.
struct Case {
  int source_type;
  int destination_type;
  std::vector<BoxAxis> axes;
  std::size_t source_begin;
  std::size_t destination_begin;
  std::size_t source_size;
  std::size_t destination_size;
};

std::string describe(const Case& box) {
  std::string text =
      std::to_string(box.source_type) + " to " + std::to_string(box.destination_type);
  for (const BoxAxis& axis : box.axes)
    text += ", {" + std::to_string(axis.count) + ", " + std::to_string(axis.source_stride) + ", " +
            std::to_string(axis.destination_stride) + "}";
  return text + " at " + std::to_string(box.destination_begin);
}

void convert_one(const Case& box, const unsigned char* source, unsigned char* destination) {
  unsigned char imaginary[8];
  const bool splits = is_complex(box.source_type) && !is_complex(box.destination_type);
  ASSERT_EQ(vrel_dt_convert(box.source_type, box.destination_type, source, destination, 1, nullptr,
                            splits ? imaginary : nullptr),
            0);
}

// Element by element, by their numbers.
void copy_naively(const Case& box, const Bytes& source, Bytes& destination) {
  std::size_t count = 1;
  for (const BoxAxis& axis : box.axes) count *= axis.count;
  for (std::size_t i = 0; i < count; ++i) {
    const unsigned char* from = source.data() + box.source_begin;
    unsigned char* to = destination.data() + box.destination_begin;
    std::size_t rest = i;
    for (const BoxAxis& axis : box.axes) {
      const auto index = static_cast<std::ptrdiff_t>(rest % axis.count);
      rest /= axis.count;
      from += index * axis.source_stride;
      to += index * axis.destination_stride;
    }
    convert_one(box, from, to);
  }
}

Bytes random_bytes(std::size_t size, std::mt19937& random) {
  Bytes bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<unsigned char>(random());
  return bytes;
}

// Whether the copy gives the bytes of the naive one, in the whole of the buffer around the box too.
void expect_naive_result(const Case& box, const Bytes& source) {
  Bytes expected(box.destination_size, guard);
  copy_naively(box, source, expected);
  Bytes copied(box.destination_size, guard);
  ASSERT_TRUE(copy_box(box.source_type, box.destination_type, source.data() + box.source_begin,
                       copied.data() + box.destination_begin, box.axes));
  ASSERT_TRUE(copied == expected)
      << "differs at "
      << std::mismatch(copied.begin(), copied.end(), expected.begin()).first - copied.begin();
}

// Gives each axis its place in a buffer with room beyond the box on some axes, in a given order.
class Layout {
 public:
  explicit Layout(std::ptrdiff_t element_size) : stride_(element_size) {}

  std::ptrdiff_t add(std::size_t count, std::size_t room) {
    const std::ptrdiff_t stride = stride_;
    stride_ *= static_cast<std::ptrdiff_t>(count + room);
    return stride;
  }
  std::size_t size() const { return static_cast<std::size_t>(stride_); }

 private:
  std::ptrdiff_t stride_;
};

class RandomCase {
 public:
  RandomCase(std::mt19937& random, std::size_t most_elements)
      : random_(random), most_elements_(most_elements) {}

  Case make(int source_type, int destination_type, const std::vector<std::size_t>& counts) {
    Case box = {source_type, destination_type, {}, below(20), below(80), 0, 0};
    for (const std::size_t count : counts) box.axes.push_back({count, 0, 0});
    box.source_size = lay_out(box, source_type, &BoxAxis::source_stride) + box.source_begin;
    box.destination_size =
        lay_out(box, destination_type, &BoxAxis::destination_stride) + box.destination_begin + 70;
    std::shuffle(box.axes.begin(), box.axes.end(), random_);
    return box;
  }

  std::vector<std::size_t> counts() {
    static constexpr std::size_t choices[] = {1,  2,  3,  4,  5,  7,  8,   9,   15,  16, 17,
                                              31, 32, 33, 63, 64, 65, 127, 128, 129, 300};
    std::vector<std::size_t> counts;
    std::size_t elements = 1;
    for (std::size_t rank = below(7); counts.size() < rank;) {
      std::size_t count = choices[below(std::size(choices))];
      if (elements * count > most_elements_) count = 1 + below(3);
      elements *= count;
      counts.push_back(count);
    }
    if (!counts.empty() && below(40) == 0) counts[below(counts.size())] = 0;
    return counts;
  }

  std::size_t below(std::size_t limit) { return random_() % limit; }

 private:
  std::size_t lay_out(Case& box, int type, std::ptrdiff_t BoxAxis::*stride) {
    std::vector<std::size_t> order(box.axes.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    if (below(3) != 0) std::shuffle(order.begin(), order.end(), random_);
    const bool is_dense = below(2) == 0;
    Layout layout(size_of(type) * (below(5) == 0 ? 2 : 1));
    for (const std::size_t axis : order)
      box.axes[axis].*stride = layout.add(box.axes[axis].count, is_dense ? 0 : below(3));
    return layout.size();
  }

  std::mt19937& random_;
  std::size_t most_elements_;
};

TEST(CopyBoxTest, EveryPairOfTypesConvertsAsASingleValueDoes) {
  constexpr unsigned seed = 20;
  std::mt19937 random(seed);
  RandomCase cases(random, 1);
  const std::vector<std::vector<std::size_t>> shapes = {{}, {7}, {70, 3}, {3, 40, 5}, {9, 2, 33}};
  for (const int source_type : numeric_types())
    for (const int destination_type : numeric_types())
      for (const auto& shape : shapes)
        for (int round = 0; round < 3; ++round) {
          const Case box = cases.make(source_type, destination_type, shape);
          SCOPED_TRACE("seed " + std::to_string(seed) + ": " + describe(box));
          ASSERT_NO_FATAL_FAILURE(expect_naive_result(box, random_bytes(box.source_size, random)));
        }
}

TEST(CopyBoxTest, RandomBoxesAreCopiedAsElementByElement) {
  constexpr unsigned seed = 4711;
  std::mt19937 random(seed);
  RandomCase cases(random, 20000);
  const std::vector<int> types = numeric_types();
  const Bytes source = random_bytes(std::size_t{4} << 20, random);
  int copied = 0;
  for (int round = 0; round < 4000; ++round) {
    const int source_type = types[random() % types.size()];
    const int destination_type = random() % 2 == 0 ? source_type : types[random() % types.size()];
    const Case box = cases.make(source_type, destination_type, cases.counts());
    if (box.source_size > source.size() || box.destination_size > source.size()) continue;
    SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round) + ": " +
                 describe(box));
    ASSERT_NO_FATAL_FAILURE(expect_naive_result(box, source));
    ++copied;
  }
  EXPECT_GT(copied, 3000);
}

// The axes of a whole stack whose sizes and types are given; the order of the destination's axes.
Case permuted(int source_type, int destination_type, const std::vector<std::size_t>& sizes,
              const std::vector<std::size_t>& permutation) {
  Case box = {source_type, destination_type, {}, 0, 16, 0, 0};
  Layout source(size_of(source_type));
  for (const std::size_t size : sizes) box.axes.push_back({size, source.add(size, 0), 0});
  Layout destination(size_of(destination_type));
  for (const std::size_t axis : permutation)
    box.axes[axis].destination_stride = destination.add(sizes[axis], 0);
  box.source_size = source.size();
  box.destination_size = destination.size() + 16 + 70;
  return box;
}

TEST(CopyBoxTest, EveryPermutationOfFourAxesIsCopied) {
  std::mt19937 random(1);
  const std::vector<std::vector<std::size_t>> shapes = {
      {3, 70, 17, 5}, {70, 3, 5, 17}, {16, 16, 16, 16}, {1, 300, 1, 40}, {129, 2, 2, 65}};
  for (const auto& shape : shapes) {
    std::vector<std::size_t> permutation = {0, 1, 2, 3};
    do {
      for (const int destination_type : {4, 64, 128 | complex_flag}) {
        const Case box = permuted(4, destination_type, shape, permutation);
        SCOPED_TRACE(describe(box));
        ASSERT_NO_FATAL_FAILURE(expect_naive_result(box, random_bytes(box.source_size, random)));
      }
    } while (std::next_permutation(permutation.begin(), permutation.end()));
  }
}

TEST(CopyBoxTest, SizesAroundTheEdgesOfTilesAreCopiedForEveryElementSize) {
  std::mt19937 random(2);
  for (const int type : {1, 4, 16, 128, 128 | complex_flag})
    for (const std::size_t columns : {127u, 128u, 129u, 257u})
      for (const std::size_t rows : {63u, 64u, 65u, 255u, 256u, 257u}) {
        const Case box = permuted(type, type, {columns, rows}, {1, 0});
        SCOPED_TRACE(describe(box));
        ASSERT_NO_FATAL_FAILURE(expect_naive_result(box, random_bytes(box.source_size, random)));
      }
}

// Large enough to be written past the cache. By 32-bit words, so that the naive loop stays quick.
Case large_box(const std::vector<std::size_t>& permutation) {
  return permuted(16, 16, {129, 257, 131}, permutation);
}

void expect_words_in_place(const Case& box) {
  std::vector<std::uint32_t> source(box.source_size / 4);
  std::iota(source.begin(), source.end(), 1u);
  Bytes copied(box.destination_size, guard);
  ASSERT_TRUE(copy_box(16, 16, reinterpret_cast<const unsigned char*>(source.data()),
                       copied.data() + box.destination_begin, box.axes));
  Bytes expected(box.destination_size, guard);
  const auto* bytes = reinterpret_cast<const unsigned char*>(source.data());
  for (std::size_t x = 0; x < box.axes[0].count; ++x)
    for (std::size_t y = 0; y < box.axes[1].count; ++y)
      for (std::size_t z = 0; z < box.axes[2].count; ++z) {
        const std::ptrdiff_t index[] = {static_cast<std::ptrdiff_t>(x),
                                        static_cast<std::ptrdiff_t>(y),
                                        static_cast<std::ptrdiff_t>(z)};
        std::ptrdiff_t from = 0;
        auto to = static_cast<std::ptrdiff_t>(box.destination_begin);
        for (std::size_t i = 0; i < 3; ++i) {
          from += index[i] * box.axes[i].source_stride;
          to += index[i] * box.axes[i].destination_stride;
        }
        std::copy_n(bytes + from, 4, expected.begin() + to);
      }
  EXPECT_TRUE(copied == expected) << describe(box);
}

TEST(CopyBoxTest, LargeBoxesAreCopiedInEveryOrder) {
  std::vector<std::size_t> permutation = {0, 1, 2};
  do {
    expect_words_in_place(large_box(permutation));
  } while (std::next_permutation(permutation.begin(), permutation.end()));
}

TEST(CopyBoxTest, LargeBoxesOfShortRowsAreCopiedInBothOrders) {
  for (const std::vector<std::size_t>& permutation :
       {std::vector<std::size_t>{0, 1, 2}, std::vector<std::size_t>{1, 0, 2}})
    expect_words_in_place(permuted(16, 16, {100003, 47, 1}, permutation));
}

TEST(CopyBoxTest, OneLongRunIsConvertedPastTheCache) {
  std::vector<std::uint16_t> source(5000003);
  std::iota(source.begin(), source.end(), std::uint16_t{0});
  std::vector<float> copied(source.size() + 1, -1.0f);
  ASSERT_TRUE(copy_box(4, 64, reinterpret_cast<const unsigned char*>(source.data()),
                       reinterpret_cast<unsigned char*>(copied.data()), {{source.size(), 2, 4}}));
  EXPECT_EQ(copied.back(), -1.0f);
  copied.pop_back();
  EXPECT_TRUE(copied == std::vector<float>(source.begin(), source.end()));
}

TEST(CopyBoxTest, LargeCropsAreCopiedAndTouchNothingElse) {
  for (const auto& [begin, columns] :
       {std::pair(16u, 128u), std::pair(17u, 128u), std::pair(64u, 128u), std::pair(64u, 127u)}) {
    Case box = large_box({0, 1, 2});
    box.destination_begin = begin;
    box.axes[0] = {columns, 4, 4};
    box.axes[1].destination_stride = 4 * 140;
    box.axes[2].destination_stride = 4 * 140 * 258;
    box.destination_size = begin + std::size_t{4} * 140 * 258 * 131;
    expect_words_in_place(box);
  }
}

TEST(CopyBoxTest, ManyLongRowsAreConvertedPastTheCache) {
  const std::size_t columns = 301, rows = 18000;
  std::vector<std::uint16_t> source((columns + 5) * rows);
  std::iota(source.begin(), source.end(), std::uint16_t{0});
  std::vector<float> copied(columns * rows + 2, -1.0f);
  const std::vector<BoxAxis> axes = {{columns, 2, 4}, {rows, 2 * (columns + 5), 4 * columns}};
  ASSERT_TRUE(copy_box(4, 64, reinterpret_cast<const unsigned char*>(source.data()),
                       reinterpret_cast<unsigned char*>(copied.data() + 1), axes));
  std::vector<float> expected(copied.size(), -1.0f);
  for (std::size_t row = 0; row < rows; ++row)
    for (std::size_t column = 0; column < columns; ++column)
      expected[1 + row * columns + column] = source[row * (columns + 5) + column];
  EXPECT_TRUE(copied == expected);
}

TEST(CopyBoxTest, ABoxWithoutAxesIsOneElement) {
  const unsigned char source[] = {7, 8};
  unsigned char destination[] = {guard, guard};
  EXPECT_TRUE(copy_box(1, 1, source, destination, {}));
  EXPECT_EQ(destination[0], 7);
  EXPECT_EQ(destination[1], guard);
}

TEST(CopyBoxTest, ACountOfZeroCopiesNothing) {
  EXPECT_TRUE(copy_box(1, 64, nullptr, nullptr, {{5, 1, 4}, {0, 5, 20}}));
}

TEST(CopyBoxTest, AnElementIsRepeatedByASourceStrideOfZero) {
  const unsigned char source[] = {7};
  Bytes destination(200, guard);
  EXPECT_TRUE(copy_box(1, 1, source, destination.data(), {{200, 0, 1}}));
  EXPECT_EQ(destination, Bytes(200, 7));
}

TEST(CopyBoxTest, TypesThatAreNotNumericAreRefusedAndNothingIsTouched) {
  const Bytes source(64, 7);
  for (const int type : {0, 0x400, 0x800, 0x4000, 0x8000, 0x10000, 0x10000 | complex_flag, 0x20000,
                         3, -1, static_cast<int>(0x80000001u)}) {
    Bytes destination(64, guard);
    EXPECT_FALSE(copy_box(type, 1, source.data(), destination.data(), {{4, 1, 1}})) << type;
    EXPECT_FALSE(copy_box(1, type, source.data(), destination.data(), {{4, 1, 1}})) << type;
    EXPECT_FALSE(copy_box(type, type, source.data(), destination.data(), {{0, 1, 1}})) << type;
    EXPECT_EQ(destination, Bytes(64, guard));
  }
}

}  // namespace
