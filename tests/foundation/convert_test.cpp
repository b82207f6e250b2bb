#include <gtest/gtest.h>
#include <vrelio/foundation/convert.h>
#include <vrelio/foundation/data_type.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <complex>
#include <cstring>
#include <string>
#include <vector>

#include "foundation/convert_values.h"

namespace {

using namespace Vrel::testing;

constexpr int array_flag = INT_MIN;
constexpr unsigned seed = 20240;
constexpr unsigned char guard = 0xA5;

// A naive conversion to compare with.

template <class To, class From>
To truncate_in_range(long double truncated, long double low, long double high, From otherwise) {
  if (!(low <= truncated && truncated <= high)) return static_cast<To>(otherwise);
  if (truncated < 0) return static_cast<To>(0 - static_cast<unsigned long long>(-truncated));
  return static_cast<To>(static_cast<unsigned long long>(truncated));
}

template <class To, class From>
To reference(From value) {
  if constexpr (std::is_floating_point_v<To>) {
    return static_cast<To>(value);
  } else if constexpr (std::is_integral_v<From>) {
    return static_cast<To>(static_cast<unsigned long long>(value));
  } else {
    const long double truncated = std::trunc(static_cast<long double>(value));
    const long double two31 = 2147483648.0L;
    const long double two63 = 9223372036854775808.0L;
    if constexpr (sizeof(To) < 4)
      return truncate_in_range<To>(truncated, -two31, two31 - 1, 0);
    else if constexpr (std::is_same_v<To, int>)
      return truncate_in_range<To>(truncated, -two31, two31 - 1, INT_MIN);
    else if constexpr (std::is_same_v<To, unsigned int>)
      return truncate_in_range<To>(truncated, -two63, two63 - 1, 0);
    else if constexpr (std::is_same_v<To, long long>)
      return truncate_in_range<To>(truncated, -two63, two63 - 1, LLONG_MIN);
    else
      return truncate_in_range<To>(truncated, -two63, 2 * two63 - 1, LLONG_MIN);
  }
}

// Runs of elements as bytes, so that ids alone tell the types.

using Bytes = std::vector<unsigned char>;

std::size_t size_of(int id) { return static_cast<std::size_t>(vrel_dt_get_size(id)); }

template <class T>
Bytes to_bytes(const std::vector<T>& values) {
  Bytes bytes(values.size() * sizeof(T));
  std::memcpy(bytes.data(), values.data(), bytes.size());
  return bytes;
}

template <class From, class To>
Bytes references_of(const Bytes& source) {
  std::vector<From> values(source.size() / sizeof(From));
  std::memcpy(values.data(), source.data(), source.size());
  std::vector<To> converted(values.size());
  std::transform(values.begin(), values.end(), converted.begin(), reference<To, From>);
  return to_bytes(converted);
}

Bytes references(int source_id, int destination_id, const Bytes& source) {
  Bytes converted;
  visit_real_type(source_id, [&](auto from) {
    visit_real_type(destination_id, [&](auto to) {
      converted = references_of<decltype(from), decltype(to)>(source);
    });
  });
  return converted;
}

Bytes values_of(int id, std::size_t count) {
  Bytes bytes;
  visit_real_type(
      id, [&](auto value) { bytes = to_bytes(values_of_interest<decltype(value)>(count, seed)); });
  return bytes;
}

Bytes part(const Bytes& bytes, std::size_t first, std::size_t size) {
  const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(first);
  return Bytes(begin, begin + static_cast<std::ptrdiff_t>(size));
}

Bytes repeated(const Bytes& element, std::size_t times) {
  Bytes bytes;
  while (times-- > 0) bytes.insert(bytes.end(), element.begin(), element.end());
  return bytes;
}

Bytes interleaved(const Bytes& real, const Bytes& imaginary, int id) {
  Bytes elements;
  for (std::size_t i = 0; i < real.size(); i += size_of(id))
    for (const Bytes* plane : {&real, &imaginary})
      elements.insert(elements.end(), plane->data() + i, plane->data() + i + size_of(id));
  return elements;
}

Bytes with_zeros(const Bytes& real, int id) { return interleaved(real, Bytes(real.size()), id); }

// A buffer at an odd address with guards around it.
class Buffer {
 public:
  explicit Buffer(std::size_t size) : bytes_(size + 2 * margin, guard) {}
  explicit Buffer(const Bytes& content) : Buffer(content.size()) {
    std::memcpy(data(), content.data(), content.size());
  }

  unsigned char* data() { return bytes_.data() + margin; }
  Bytes content() const { return part(bytes_, margin, bytes_.size() - 2 * margin); }
  bool is_untouched() const { return bytes_ == Bytes(bytes_.size(), guard); }
  bool is_intact_outside() const {
    const Bytes guards(margin, guard);
    return part(bytes_, 0, margin) == guards &&
           part(bytes_, bytes_.size() - margin, margin) == guards;
  }

 private:
  static constexpr std::size_t margin = 67;

  Bytes bytes_;
};

std::string pair_name(int source, int destination) {
  return std::string(vrel_dt_get_name(source)) + " to " + vrel_dt_get_name(destination);
}

void expect_content(const Buffer& buffer, const Bytes& expected, const std::string& what) {
  const Bytes found = buffer.content();
  const auto differing =
      std::mismatch(found.begin(), found.end(), expected.begin(), expected.end());
  EXPECT_TRUE(found == expected) << what << ", byte " << differing.first - found.begin()
                                 << ", seed " << seed;
  EXPECT_TRUE(buffer.is_intact_outside()) << what;
}

void expect_plain(int source_id, int destination_id, const Bytes& values, const Bytes& expected) {
  Buffer source(values);
  Buffer destination(expected.size());
  const std::size_t count = values.size() / size_of(source_id);
  const std::string what =
      pair_name(source_id, destination_id) + ", " + std::to_string(count) + " elements";
  EXPECT_EQ(vrel_dt_convert(source_id, destination_id, source.data(), destination.data(),
                            static_cast<int>(count), nullptr, nullptr),
            0)
      << what;
  expect_content(destination, expected, what);
}

// An odd count, so that what does not fill a vector is there too.
constexpr int many = 1003;

class ConvertFromTest : public testing::TestWithParam<int> {
 protected:
  Bytes converted(int destination_id, const Bytes& source) const {
    return references(id, destination_id, source);
  }
  void expect_real(int destination_id, const Bytes& source) const {
    expect_plain(id, destination_id, source, converted(destination_id, source));
  }

  const int id = GetParam();
  const std::size_t size = size_of(id);
  const Bytes values = values_of(id, many);
  const Bytes others = values_of(id, many + 500);
  const Bytes imaginary = part(others, 500 * size, many* size);
};

INSTANTIATE_TEST_SUITE_P(EveryRealType, ConvertFromTest, testing::ValuesIn(real_ids),
                         [](const auto& tested) {
                           return std::string(vrel_dt_get_name(tested.param));
                         });

TEST_P(ConvertFromTest, RealToReal) {
  for (const int to : real_ids) expect_real(to, values);
}

TEST_P(ConvertFromTest, OneElementGivesWhatManyGive) {
  for (const int to : real_ids)
    for (std::size_t i = 0; i < values.size(); i += size) expect_real(to, part(values, i, size));
}

TEST_P(ConvertFromTest, RunsOfEveryLengthConvertToTheirEnd) {
  for (const int to : real_ids)
    for (std::size_t count = 2; count < 70; ++count)
      expect_real(to, part(values, values.size() - count * size, count * size));
}

TEST_P(ConvertFromTest, EveryPlaceInARunGivesTheSame) {
  for (const int to : real_ids)
    for (std::size_t i = 0; i < values.size(); i += size)
      expect_real(to, repeated(part(values, i, size), 39));
}

TEST_P(ConvertFromTest, RealToComplexHasImaginaryPartsOfZero) {
  for (const int to : real_ids)
    expect_plain(id, to | complex_flag, values, with_zeros(converted(to, values), to));
}

TEST_P(ConvertFromTest, ComplexToComplexConvertsBothParts) {
  const Bytes elements = interleaved(values, imaginary, id);
  for (const int to : real_ids)
    expect_plain(id | complex_flag, to | complex_flag, elements, converted(to, elements));
}

TEST_P(ConvertFromTest, ComplexToRealIsNoPlainPair) {
  for (const int to : real_ids) {
    Buffer destination(64);
    EXPECT_EQ(vrel_dt_convert(id | complex_flag, to, values.data(), destination.data(), 1, nullptr,
                              nullptr),
              -1);
    EXPECT_TRUE(destination.is_untouched());
  }
}

TEST_P(ConvertFromTest, JoinsTwoPlanes) {
  for (const int to : real_ids) {
    Buffer real_plane(values);
    Buffer imaginary_plane(imaginary);
    Buffer destination(2 * many * size_of(to));
    EXPECT_EQ(vrel_dt_convert(id, to | complex_flag, real_plane.data(), destination.data(), many,
                              imaginary_plane.data(), nullptr),
              0);
    expect_content(destination, interleaved(converted(to, values), converted(to, imaginary), to),
                   "joining " + pair_name(id, to | complex_flag));
  }
}

TEST_P(ConvertFromTest, SplitsIntoTwoPlanes) {
  Buffer source(interleaved(values, imaginary, id));
  for (const int to : real_ids) {
    Buffer real_plane(many * size_of(to));
    Buffer imaginary_plane(many * size_of(to));
    EXPECT_EQ(vrel_dt_convert(id | complex_flag, to, source.data(), real_plane.data(), many,
                              nullptr, imaginary_plane.data()),
              0);
    const std::string what = "splitting " + pair_name(id | complex_flag, to);
    expect_content(real_plane, converted(to, values), what);
    expect_content(imaginary_plane, converted(to, imaginary), what);
  }
}

TEST_P(ConvertFromTest, ACountOfZeroOrLessTouchesNothing) {
  for (const int to : real_ids)
    for (const int count : {0, -1, INT_MIN}) {
      Buffer one(8);
      Buffer other(8);
      EXPECT_EQ(vrel_dt_convert(id, to, nullptr, one.data(), count, nullptr, nullptr), 0);
      EXPECT_EQ(
          vrel_dt_convert(id, to | complex_flag, one.data(), nullptr, count, other.data(), nullptr),
          0);
      EXPECT_EQ(
          vrel_dt_convert(id | complex_flag, to, nullptr, one.data(), count, nullptr, other.data()),
          0);
      EXPECT_TRUE(one.is_untouched() && other.is_untouched());
    }
}

TEST(ConvertTest, JoiningInt16PlanesGivesFloatPairs) {
  const short real[] = {-1, 2};
  const short imaginary[] = {3, -32768};
  std::complex<float> joined[2];
  ASSERT_EQ(vrel_dt_convert(8, 0x40000040, real, joined, 2, imaginary, nullptr), 0);
  EXPECT_EQ(joined[0], std::complex<float>(-1, 3));
  EXPECT_EQ(joined[1], std::complex<float>(2, -32768));
}

TEST(ConvertTest, AnRgbTripleIsCopied) {
  const Bytes triples = values_of(1, 3 * many);
  expect_plain(1024, 1024, triples, triples);
}

TEST(ConvertTest, TheSecondIdOfUint32IsASourceForEveryType) {
  const Bytes values = values_of(16, many);
  for (const int to : real_ids) {
    const Bytes expected = references(16, to, values);
    expect_plain(2048, to, values, expected);
    expect_plain(2048, to | complex_flag, values, with_zeros(expected, to));
  }
}

TEST(ConvertTest, WithoutElementsAnyOtherPairThatExistsSucceedsToo) {
  Buffer destination(64);
  EXPECT_EQ(vrel_dt_convert(1024, 1024, nullptr, destination.data(), 0, nullptr, nullptr), 0);
  EXPECT_EQ(vrel_dt_convert(2048, 64, nullptr, destination.data(), 0, nullptr, nullptr), 0);
  for (const int from : real_ids)
    for (const int to : real_ids)
      EXPECT_EQ(vrel_dt_convert(from | complex_flag, to | complex_flag, nullptr, destination.data(),
                                0, nullptr, nullptr),
                0);
  EXPECT_TRUE(destination.is_untouched());
}

// What does not exist.

std::vector<int> all_ids() {
  std::vector<int> ids = {0,      3,          256,        512,        1024,       2048,
                          0x4000, 0x8000,     0x10000,    0x20000,    0x40000,    0x40000000,
                          -1,     0x40000400, 0x40000800, 0x40010000, 0x40000003, 0x20000001};
  for (const int id : real_ids)
    for (const int variant :
         {id, id | complex_flag, id | array_flag, id | complex_flag | array_flag})
      ids.push_back(variant);
  return ids;
}

bool is_real(int id) {
  return std::find(std::begin(real_ids), std::end(real_ids), id) != std::end(real_ids);
}

bool is_complex(int id) {
  return (id & complex_flag) != 0 &&
         is_real(static_cast<int>(static_cast<unsigned>(id) ^ 0x40000000u));
}

bool exists(int source, int destination, bool joins, bool splits) {
  if (joins && splits) return false;
  if (joins) return is_real(source) && is_complex(destination);
  if (splits) return is_complex(source) && is_real(destination);
  if (source == 1024) return destination == 1024;
  if (source == 2048 || is_real(source)) return is_real(destination) || is_complex(destination);
  return is_complex(source) && is_complex(destination);
}

void expect_refused(int source_id, int destination_id, bool joins, bool splits) {
  for (const int count : {1, 0, -1}) {
    std::vector<unsigned char> source(64);
    std::vector<unsigned char> source_imaginary(64);
    Buffer destination(64);
    Buffer imaginary(64);
    EXPECT_EQ(vrel_dt_convert(source_id, destination_id, source.data(), destination.data(), count,
                              joins ? source_imaginary.data() : nullptr,
                              splits ? imaginary.data() : nullptr),
              -1)
        << std::hex << source_id << " to " << destination_id;
    EXPECT_TRUE(destination.is_untouched() && imaginary.is_untouched());
  }
}

TEST(ConvertTest, EveryOtherPairIsRefusedInEveryModeAndNothingIsWritten) {
  int refused = 0;
  for (const int source : all_ids())
    for (const int destination : all_ids())
      for (const int mode : {0, 1, 2, 3}) {
        const bool joins = (mode & 1) != 0;
        const bool splits = (mode & 2) != 0;
        if (exists(source, destination, joins, splits)) continue;
        ++refused;
        expect_refused(source, destination, joins, splits);
      }
  const int all_pairs = static_cast<int>(4 * all_ids().size() * all_ids().size());
  EXPECT_EQ(refused, all_pairs - (300 + 20 + 1) - 100 - 100);
}

TEST(ConvertTest, BothImaginaryPlanesAreRefused) { expect_refused(8, 0x40000040, true, true); }

TEST(ConvertTest, ALogicalConvertsToNothing) {
  for (const int destination : all_ids()) expect_refused(0x10000, destination, false, false);
}

// Buffers beyond the cache, whose results are stored in another way.

// Compares a large run with many small ones. Planes of a destination lie side by side.
void expect_large(int source_id, int destination_id, std::size_t shift, bool joins, bool splits,
                  std::size_t surplus = 77) {
  const std::size_t source_size = size_of(source_id);
  const std::size_t size = size_of(destination_id);
  const std::size_t count = (std::size_t{17} << 20) / size + surplus;
  const std::size_t planes = splits ? 2 : 1;
  Bytes source(2 * count * source_size);
  for (std::size_t i = 0; i < source.size(); ++i)
    source[i] = static_cast<unsigned char>(i * 2654435761u >> 13);
  Bytes large(2 * count * size + 64, guard);
  Bytes small(large);
  const auto convert = [&](Bytes& to, std::size_t first, std::size_t number) {
    unsigned char* real = to.data() + shift + first * size;
    return vrel_dt_convert(source_id, destination_id, source.data() + first * source_size, real,
                           static_cast<int>(number),
                           joins ? source.data() + (count + first) * source_size : nullptr,
                           splits ? real + count * size : nullptr);
  };
  ASSERT_EQ(convert(large, 0, count), 0);
  for (std::size_t first = 0; first < count; first += 1000)
    ASSERT_EQ(convert(small, first, std::min<std::size_t>(1000, count - first)), 0);
  EXPECT_TRUE(large == small) << pair_name(source_id, destination_id) << " at " << shift;
  EXPECT_EQ(large[shift + planes * count * size], guard);
}

TEST(ConvertTest, ALargeRunGivesWhatSmallOnesGive) {
  for (const std::size_t shift : {0u, 3u}) {
    expect_large(1, 4, shift, false, false);
    expect_large(64, 4, shift, false, false);
    expect_large(128, 0x40000040, shift, false, false);
    expect_large(0x40000008, 0x40000040, shift, false, false);
    expect_large(1024, 1024, shift, false, false);
  }
}

TEST(ConvertTest, ALargeJoinGivesWhatSmallOnesGive) {
  for (const std::size_t shift : {0u, 8u, 5u}) expect_large(8, 0x40000040, shift, true, false);
}

// With some surpluses both planes begin alike to the cache, with others they do not.
TEST(ConvertTest, ALargeSplitGivesWhatSmallOnesGive) {
  for (const std::size_t shift : {0u, 4u, 1u})
    for (const std::size_t surplus : {77u, 80u})
      expect_large(0x40000008, 64, shift, false, true, surplus);
}

void expect_in_place(int source_id, int destination_id, std::size_t count) {
  const Bytes values = values_of(source_id, count);
  Bytes buffer = values;
  ASSERT_EQ(vrel_dt_convert(source_id, destination_id, buffer.data(), buffer.data(),
                            static_cast<int>(count), nullptr, nullptr),
            0);
  buffer.resize(count * size_of(destination_id));
  EXPECT_TRUE(buffer == references(source_id, destination_id, values))
      << pair_name(source_id, destination_id) << ", seed " << seed;
}

TEST(ConvertTest, ElementsThatDoNotGrowConvertInPlace) {
  for (const std::size_t count : {1003u, 5u << 20}) {
    expect_in_place(128, 64, count);
    expect_in_place(128, 1, count);
    expect_in_place(32, 64, count);
    expect_in_place(64, 64, count);
  }
}

}  // namespace
