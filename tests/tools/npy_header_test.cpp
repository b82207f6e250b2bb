#include "lib/npy_header.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vrelio/foundation/data_type.h>

#include "support/expect_error.h"

namespace Vrel::tool {
namespace {

using testing::HasSubstr;

std::string dictionary_of(const std::string& header) { return header.substr(10); }

TEST(NpyHeaderTest, HeaderOfAStackOfTwoAxesIsThisSequenceOfBytes) {
  const std::string dictionary = "{'descr': '<u2', 'fortran_order': False, 'shape': (4, 6, ), }";
  const std::string expected = std::string("\x93NUMPY\x01\x00\x76\x00", 10) + dictionary +
                               std::string(117 - dictionary.size(), ' ') + '\n';
  EXPECT_EQ(expected.size(), 128u);
  EXPECT_EQ(npy_header(4, {6, 4}), expected);
}

TEST(NpyHeaderTest, EveryHeaderEndsAtAMultipleOf64AndTellsItsOwnLength) {
  for (unsigned rank = 0; rank <= 15; ++rank) {
    for (const std::uint64_t size : {1ull, 10ull, 1000000000ull}) {
      const std::string header = npy_header(0x40000001, std::vector<std::uint64_t>(rank, size));
      const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(header[i]); };
      EXPECT_EQ(header.size() % 64, 0u);
      EXPECT_EQ(byte(8) + 256u * byte(9) + 10, header.size());
      EXPECT_EQ(header.back(), '\n');
    }
  }
}

TEST(NpyHeaderTest, SlowestAxisComesFirst) {
  EXPECT_THAT(npy_header(1, {2, 3, 5}), HasSubstr("'shape': (5, 3, 2, )"));
}

TEST(NpyHeaderTest, ASingleSampleHasNoAxis) {
  EXPECT_THAT(npy_header(128, {}), HasSubstr("'shape': ()"));
}

TEST(NpyHeaderTest, EveryDataTypeHasItsDescriptor) {
  const std::vector<std::pair<int, std::string>> rows = {
      {1, "'|u1'"},
      {2, "'|i1'"},
      {4, "'<u2'"},
      {8, "'<i2'"},
      {16, "'<u4'"},
      {32, "'<i4'"},
      {64, "'<f4'"},
      {128, "'<f8'"},
      {1024, "[('r', '|u1'), ('g', '|u1'), ('b', '|u1')]"},
      {2048, "'<u4'"},
      {4096, "'<u8'"},
      {8192, "'<i8'"},
      {0x10000, "'|b1'"},
      {0x40000001, "[('re', '|u1'), ('im', '|u1')]"},
      {0x40000002, "[('re', '|i1'), ('im', '|i1')]"},
      {0x40000004, "[('re', '<u2'), ('im', '<u2')]"},
      {0x40000008, "[('re', '<i2'), ('im', '<i2')]"},
      {0x40000010, "[('re', '<u4'), ('im', '<u4')]"},
      {0x40000020, "[('re', '<i4'), ('im', '<i4')]"},
      {0x40000040, "'<c8'"},
      {0x40000080, "'<c16'"},
      {0x40001000, "[('re', '<u8'), ('im', '<u8')]"},
      {0x40002000, "[('re', '<i8'), ('im', '<i8')]"}};
  for (const auto& [id, descriptor] : rows) {
    EXPECT_THAT(dictionary_of(npy_header(id, {7})), HasSubstr("{'descr': " + descriptor + ", "));
  }
}

TEST(NpyHeaderTest, EveryTypeWithAnElementSizeHasADescriptorAndNoOther) {
  for (int bit = 0; bit < 31; ++bit) {
    for (const int flag : {0, 0x40000000}) {
      const int id = (1 << bit) | flag;
      if (vrel_dt_get_size(id) > 0) {
        EXPECT_NO_THROW(npy_header(id, {1})) << id;
      } else {
        EXPECT_THROW(npy_header(id, {1}), VrelError) << id;
      }
    }
  }
}

TEST(NpyHeaderTest, ATypeWithoutElementSizeIsRefused) {
  EXPECT_VREL_ERROR(npy_header(0x4000, {1}), "No .npy type for data type 16384!", -5);
}

}  // namespace
}  // namespace Vrel::tool
