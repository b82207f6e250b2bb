#include "foundation/convert_kernels_internal.h"

#include <gtest/gtest.h>

#include <vector>

#include "foundation/convert_values.h"

namespace {

using namespace Vrel::testing;
using Vrel::detail::convert_kernels;
using Vrel::detail::convert_table;

constexpr unsigned seed = 4711;
constexpr std::size_t many = 1003;

struct Output {
  std::vector<unsigned char> real = std::vector<unsigned char>(16 * many + 32);
  std::vector<unsigned char> imaginary = std::vector<unsigned char>(8 * many + 32);
};

bool operator==(const Output& first, const Output& second) {
  return first.real == second.real && first.imaginary == second.imaginary;
}

// The kernel sets that this processor can run.
std::vector<const convert_kernels*> runnable_kernels() {
  std::vector<const convert_kernels*> sets = {&Vrel::detail::baseline_kernels};
#ifdef __x86_64__
  if (__builtin_cpu_supports("avx2")) sets.push_back(&Vrel::detail::avx2_kernels);
  if (&Vrel::detail::supported_kernels() == &Vrel::detail::avx512_kernels)
    sets.push_back(&Vrel::detail::avx512_kernels);
#endif
  return sets;
}

constexpr convert_table convert_kernels::*tables[] = {
    &convert_kernels::plain, &convert_kernels::to_complex, &convert_kernels::join,
    &convert_kernels::split};

// Two planes of values at an odd address.
std::vector<unsigned char> source_of(int id) {
  std::vector<unsigned char> source;
  visit_real_type(id, [&](auto value) {
    const auto values = values_of_interest<decltype(value)>(2 * many, seed);
    const auto* bytes = reinterpret_cast<const unsigned char*>(values.data());
    source.assign(1, 0);
    source.insert(source.end(), bytes, bytes + values.size() * sizeof value);
  });
  return source;
}

Output run(const convert_table& table, int row, int column, std::size_t count) {
  const std::vector<unsigned char> source = source_of(real_ids[row]);
  const unsigned char* real = source.data() + 1;
  const unsigned char* imaginary = real + (source.size() - 1) / 2;
  Output output;
  table.rows[row].columns[column].kernel(
      {real, imaginary, output.real.data() + 3, output.imaginary.data() + 3}, count);
  return output;
}

void expect_results_of_baseline(const convert_kernels& set, std::size_t count) {
  for (const auto table : tables)
    for (int row = 0; row < 10; ++row)
      for (int column = 0; column < 10; ++column)
        EXPECT_TRUE(run(set.*table, row, column, count) ==
                    run(Vrel::detail::baseline_kernels.*table, row, column, count))
            << "row " << row << ", column " << column << ", seed " << seed;
}

TEST(ConvertKernelsTest, TheRowsAreThoseOfTheIds) {
  for (int row = 0; row < 10; ++row) {
    EXPECT_EQ(Vrel::detail::real_row(real_ids[row]), row);
    EXPECT_EQ(Vrel::detail::complex_row(real_ids[row] | complex_flag), row);
  }
}

TEST(ConvertKernelsTest, EverySetGivesTheResultsOfTheBaseline) {
  for (const convert_kernels* set : runnable_kernels())
    for (const std::size_t count : {std::size_t{1}, std::size_t{7}, many})
      expect_results_of_baseline(*set, count);
}

TEST(ConvertKernelsTest, OnlyPlainLoopsOfEqualBytesAreCopies) {
  const convert_kernels& kernels = Vrel::detail::baseline_kernels;
  for (int row = 0; row < 10; ++row)
    for (int column = 0; column < 10; ++column) {
      const bool has_integers = row != 6 && row != 7 && column != 6 && column != 7;
      constexpr int sizes[] = {1, 1, 2, 2, 4, 4, 4, 8, 8, 8};
      EXPECT_EQ(kernels.plain.rows[row].columns[column].is_copy,
                row == column || (has_integers && sizes[row] == sizes[column]));
      EXPECT_FALSE(kernels.to_complex.rows[row].columns[column].is_copy);
      EXPECT_FALSE(kernels.join.rows[row].columns[column].is_copy);
      EXPECT_FALSE(kernels.split.rows[row].columns[column].is_copy);
    }
}

}  // namespace
