#include "lib/sample_conversion.h"

#include <gtest/gtest.h>
#include <vrelio/foundation/data_type.h>

#include <cstring>

#include "support/expect_error.h"

namespace Vrel::tool {
namespace {

void read_numbers(u64 position, u64 count, void* destination) {
  for (u64 i = 0; i < count; ++i) {
    const auto sample = static_cast<unsigned>(position + i);
    std::memcpy(static_cast<char*>(destination) + i * sizeof sample, &sample, sizeof sample);
  }
}

TEST(SampleConversionTest, AllSamplesOfALargeReadAreConverted) {
  const ReadSamples read = convert_samples(read_numbers, 0x10, 0x80);
  std::vector<double> samples(100000);
  read(7, samples.size(), samples.data());
  for (std::size_t i = 0; i < samples.size(); ++i)
    ASSERT_EQ(samples[i], static_cast<double>(i + 7));
}

TEST(SampleConversionTest, TheSameTypeIsReadAsItIs) {
  const ReadSamples read = convert_samples(read_numbers, 0x10, 0x10);
  unsigned sample = 0;
  read(5, 1, &sample);
  EXPECT_EQ(sample, 5u);
}

TEST(SampleConversionTest, WhatDoesNotConvertIsRefusedBeforeAnyRead) {
  EXPECT_VREL_ERROR(convert_samples(read_numbers, 0x40000040, 0x40),
                    "Invalid on-the-fly conversion from 'cplx_single' to 'single'!", -1);
  EXPECT_VREL_ERROR(convert_samples(read_numbers, 0x10000, 1),
                    "Invalid on-the-fly conversion from 'logical' to 'uint8'!", -1);
}

TEST(SampleConversionTest, ThereAreTwentyTypesToConvertTo) {
  int count = 0;
  for (int bit = 0; bit < 30; ++bit) {
    count += is_conversion_target(1 << bit) ? 1 : 0;
    count += is_conversion_target((1 << bit) | 0x40000000) ? 1 : 0;
  }
  EXPECT_EQ(count, 20);
  EXPECT_FALSE(is_conversion_target(0));
}

}  // namespace
}  // namespace Vrel::tool
