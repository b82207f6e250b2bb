#include "lib/import_stack.h"

#include <gtest/gtest.h>

#include "support/expect_error.h"

namespace Vrel::tool {
namespace {

TEST(ImportStackTest, SamplesAreTheProductOfTheSizes) {
  EXPECT_EQ(count_samples({}), 1u);
  EXPECT_EQ(count_samples({3, 4, 5}), 60u);
  EXPECT_EQ(count_samples({4294967295u}), 4294967295u);
  EXPECT_EQ(count_samples({0, 4294967295u, 4294967295u}), 0u);
  EXPECT_EQ(count_samples({4294967295u, 4294967295u, 0}), 0u);
}

TEST(ImportStackTest, ProductsThatAStackCannotHaveAreRefused) {
  constexpr const char* too_large = "The product exceeds the maximum size.";
  EXPECT_VREL_ERROR(count_samples({65536, 65536}), too_large, -1);
  EXPECT_VREL_ERROR(count_samples({4294967296u}), too_large, -1);
  EXPECT_VREL_ERROR(count_samples({0, 4294967296u}), too_large, -1);
  EXPECT_VREL_ERROR(count_samples({1ull << 32, 1ull << 32}), too_large, -1);
}

TEST(ImportStackTest, FifteenAxesAreTheMost) {
  EXPECT_EQ(count_samples(std::vector<u64>(15, 1)), 1u);
  EXPECT_VREL_ERROR(count_samples(std::vector<u64>(16, 1)),
                    "16 axes are more than the 15 that a stack can have!", -4);
}

TEST(ImportStackTest, BytesAreThoseOfAllSamples) {
  ImportStack stack;
  stack.data_type = 0x40000080;
  stack.axes = make_axes({3, 2});
  EXPECT_EQ(count_bytes(stack), 96u);
}

}  // namespace
}  // namespace Vrel::tool
