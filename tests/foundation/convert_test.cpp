#include <gtest/gtest.h>
#include <vrelio/foundation/convert.h>
#include <vrelio/foundation/data_type.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <complex>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "foundation/convert_values.h"

namespace {

using namespace Vrel::testing;

constexpr int array_flag = INT_MIN;
constexpr unsigned seed = 20240;

// ---- a naive conversion to compare with ----

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

template <class To, class From>
std::vector<To> references(const std::vector<From>& values) {
  std::vector<To> converted;
  for (const From value : values) converted.push_back(reference<To>(value));
  return converted;
}

// ---- buffers at odd addresses, with guards around them ----

constexpr unsigned char guard = 0xA5;

class Buffer {
 public:
  explicit Buffer(std::size_t size) : bytes_(size + 2 * margin, guard) {}

  template <class T>
  explicit Buffer(const std::vector<T>& values) : Buffer(values.size() * sizeof(T)) {
    std::memcpy(data(), values.data(), values.size() * sizeof(T));
  }

  unsigned char* data() { return bytes_.data() + margin; }

  template <class T>
  std::vector<T> get() const {
    std::vector<T> values((bytes_.size() - 2 * margin) / sizeof(T));
    std::memcpy(values.data(), bytes_.data() + margin, values.size() * sizeof(T));
    return values;
  }

  bool is_intact_outside() const {
    return std::all_of(bytes_.begin(), bytes_.begin() + margin, is_guard) &&
           std::all_of(bytes_.end() - margin, bytes_.end(), is_guard);
  }

  bool is_untouched() const { return std::all_of(bytes_.begin(), bytes_.end(), is_guard); }

 private:
  static constexpr std::ptrdiff_t margin = 67;
  static bool is_guard(unsigned char byte) { return byte == guard; }

  std::vector<unsigned char> bytes_;
};

template <class T>
bool is_same_value(T first, T second) {
  if constexpr (std::is_floating_point_v<T>)
    if (std::isnan(first) || std::isnan(second)) return std::isnan(first) && std::isnan(second);
  return std::memcmp(&first, &second, sizeof first) == 0;
}

template <class T>
void expect_values(const Buffer& buffer, const std::vector<T>& expected, const std::string& what) {
  const std::vector<T> found = buffer.get<T>();
  ASSERT_EQ(found.size(), expected.size()) << what;
  for (std::size_t i = 0; i < expected.size(); ++i)
    ASSERT_PRED2(is_same_value<T>, found[i], expected[i])
        << what << ", element " << i << ", seed " << seed;
  EXPECT_TRUE(buffer.is_intact_outside()) << what;
}

std::string pair_name(int source, int destination) {
  return std::string(vrel_dt_get_name(source)) + " to " + vrel_dt_get_name(destination);
}

template <class To, class From>
void expect_plain(int source_id, int destination_id, int count, const std::vector<From>& values,
                  const std::vector<To>& expected) {
  Buffer source(values);
  Buffer destination(expected.size() * sizeof(To));
  const std::string what =
      pair_name(source_id, destination_id) + ", " + std::to_string(count) + " elements";
  EXPECT_EQ(vrel_dt_convert(source_id, destination_id, source.data(), destination.data(), count,
                            nullptr, nullptr),
            0)
      << what;
  expect_values(destination, expected, what);
}

// An odd count, so that what does not fill a vector is there too.
constexpr int many = 1003;

template <class From>
class ConvertFromTest : public testing::Test {
 protected:
  const std::vector<From> values = values_of_interest<From>(many, seed);
  const std::vector<From> others{values.rbegin(), values.rend()};
  static constexpr int id = id_of<From>();
};

using SourceTypes = testing::Types<unsigned char, char, unsigned short, short, unsigned int, int,
                                   float, double, unsigned long long, long long>;
TYPED_TEST_SUITE(ConvertFromTest, SourceTypes);

TYPED_TEST(ConvertFromTest, RealToReal) {
  for_each_real_type([&](auto to) {
    using To = decltype(to);
    expect_plain(this->id, id_of<To>(), many, this->values, references<To>(this->values));
  });
}

TYPED_TEST(ConvertFromTest, OneElementGivesWhatManyGive) {
  for_each_real_type([&](auto to) {
    using To = decltype(to);
    for (const TypeParam value : this->values)
      expect_plain(this->id, id_of<To>(), 1, std::vector<TypeParam>{value},
                   std::vector<To>{reference<To>(value)});
  });
}

TYPED_TEST(ConvertFromTest, EveryPlaceInARunGivesTheSame) {
  for_each_real_type([&](auto to) {
    using To = decltype(to);
    for (int count = 2; count < 70; ++count) {
      const std::vector<TypeParam> run(this->values.end() - count, this->values.end());
      expect_plain(this->id, id_of<To>(), count, run, references<To>(run));
    }
    for (const TypeParam value : this->values) {
      const std::vector<TypeParam> run(39, value);
      expect_plain(this->id, id_of<To>(), 39, run, references<To>(run));
    }
  });
}

TYPED_TEST(ConvertFromTest, RealToComplexHasImaginaryPartsOfZero) {
  for_each_real_type([&](auto to) {
    using To = decltype(to);
    const std::vector<To> zeros(this->values.size(), To(0));
    expect_plain(this->id, id_of<To>() | complex_flag, many, this->values,
                 interleave(references<To>(this->values), zeros));
  });
}

TYPED_TEST(ConvertFromTest, ComplexToComplexConvertsBothParts) {
  const std::vector<TypeParam> elements = interleave(this->values, this->others);
  for_each_real_type([&](auto to) {
    using To = decltype(to);
    expect_plain(this->id | complex_flag, id_of<To>() | complex_flag, many, elements,
                 references<To>(elements));
  });
}

TYPED_TEST(ConvertFromTest, ComplexToRealIsNoPlainPair) {
  for_each_real_type([&](auto to) {
    Buffer source(this->values);
    Buffer destination(64);
    EXPECT_EQ(vrel_dt_convert(this->id | complex_flag, id_of<decltype(to)>(), source.data(),
                              destination.data(), 1, nullptr, nullptr),
              -1);
    EXPECT_TRUE(destination.is_untouched());
  });
}

TYPED_TEST(ConvertFromTest, JoinsTwoPlanes) {
  for_each_real_type([&](auto to) {
    using To = decltype(to);
    const int to_id = id_of<To>() | complex_flag;
    const std::vector<To> expected =
        interleave(references<To>(this->values), references<To>(this->others));
    Buffer real(this->values);
    Buffer imaginary(this->others);
    Buffer destination(expected.size() * sizeof(To));
    EXPECT_EQ(vrel_dt_convert(this->id, to_id, real.data(), destination.data(), many,
                              imaginary.data(), nullptr),
              0);
    expect_values(destination, expected, "joining " + pair_name(this->id, to_id));
  });
}

TYPED_TEST(ConvertFromTest, SplitsIntoTwoPlanes) {
  Buffer source(interleave(this->values, this->others));
  for_each_real_type([&](auto to) {
    using To = decltype(to);
    Buffer real(many * sizeof(To));
    Buffer imaginary(many * sizeof(To));
    EXPECT_EQ(vrel_dt_convert(this->id | complex_flag, id_of<To>(), source.data(), real.data(),
                              many, nullptr, imaginary.data()),
              0);
    const std::string what = "splitting " + pair_name(this->id | complex_flag, id_of<To>());
    expect_values(real, references<To>(this->values), what);
    expect_values(imaginary, references<To>(this->others), what);
  });
}

TYPED_TEST(ConvertFromTest, ACountOfZeroOrLessTouchesNothing) {
  for (const int count : {0, -1, INT_MIN}) {
    for_each_real_type([&](auto to) {
      const int to_id = id_of<decltype(to)>();
      const int complex_id = this->id | complex_flag;
      EXPECT_EQ(vrel_dt_convert(this->id, to_id, nullptr, nullptr, count, nullptr, nullptr), 0);
      Buffer plane(8);
      Buffer other(8);
      EXPECT_EQ(vrel_dt_convert(this->id, to_id | complex_flag, plane.data(), nullptr, count,
                                other.data(), nullptr),
                0);
      EXPECT_EQ(
          vrel_dt_convert(complex_id, to_id, nullptr, plane.data(), count, nullptr, other.data()),
          0);
      EXPECT_TRUE(plane.is_untouched() && other.is_untouched());
    });
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
  const std::vector<unsigned char> triples = values_of_interest<unsigned char>(3 * many, seed);
  expect_plain(1024, 1024, many, triples, triples);
}

TEST(ConvertTest, TheSecondIdOfUint32IsASourceForEveryType) {
  const std::vector<unsigned int> values = values_of_interest<unsigned int>(many, seed);
  for_each_real_type([&](auto to) {
    using To = decltype(to);
    const std::vector<To> zeros(values.size(), To(0));
    expect_plain(2048, id_of<To>(), many, values, references<To>(values));
    expect_plain(2048, id_of<To>() | complex_flag, many, values,
                 interleave(references<To>(values), zeros));
  });
}

// ---- what does not exist ----

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

// ---- buffers beyond the cache, whose results are stored in another way ----

// Compares a large run with many small ones.
void expect_large(int source_id, int destination_id, std::size_t shift, bool joins, bool splits) {
  const std::size_t source_size = static_cast<std::size_t>(vrel_dt_get_size(source_id));
  const std::size_t size = static_cast<std::size_t>(vrel_dt_get_size(destination_id));
  const std::size_t count = (std::size_t{17} << 20) / size + 77;
  const std::size_t planes = splits ? 2 : 1;
  std::vector<unsigned char> source(2 * count * source_size);
  for (std::size_t i = 0; i < source.size(); ++i)
    source[i] = static_cast<unsigned char>(i * 2654435761u >> 13);
  std::vector<unsigned char> large(2 * count * size + 64, guard);
  std::vector<unsigned char> small(large);
  const auto convert = [&](std::vector<unsigned char>& to, std::size_t first, std::size_t number) {
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
  for (const std::size_t shift : {0u, 8u, 3u}) {
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

TEST(ConvertTest, ALargeSplitGivesWhatSmallOnesGive) {
  for (const std::size_t shift : {0u, 4u, 1u}) expect_large(0x40000008, 64, shift, false, true);
}

template <class From, class To>
void expect_in_place(std::size_t count) {
  const std::vector<From> values = values_of_interest<From>(count, seed);
  std::vector<From> buffer(values);
  ASSERT_EQ(vrel_dt_convert(id_of<From>(), id_of<To>(), buffer.data(), buffer.data(),
                            static_cast<int>(values.size()), nullptr, nullptr),
            0);
  std::vector<To> found(values.size());
  std::memcpy(found.data(), buffer.data(), found.size() * sizeof(To));
  const std::vector<To> expected = references<To>(values);
  for (std::size_t i = 0; i < expected.size(); ++i)
    ASSERT_PRED2(is_same_value<To>, found[i], expected[i]) << "element " << i << ", seed " << seed;
}

TEST(ConvertTest, ElementsThatDoNotGrowConvertInPlace) {
  for (const std::size_t count : {1003u, 6u << 20}) {
    expect_in_place<double, float>(count);
    expect_in_place<double, unsigned char>(count);
    expect_in_place<int, float>(count);
    expect_in_place<float, float>(count);
  }
}

}  // namespace
