// Copies of boxes of a stack beside memcpy of half the bytes that they read and write, and rows of
// few elements. copy_box_numpy.py measures them beside numpy.
#include <benchmark/benchmark.h>
#include <vrelio/foundation/data_type.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <string>
#include <vector>

#include "support/copy_box_entry.h"

namespace {

using Sizes = std::array<long long, 3>;

struct Row {
  const char* name;
  Sizes stack;
  Sizes part;
  // The axis of the source for each axis of the destination.
  std::array<std::size_t, 3> permutation;
};

constexpr Sizes big = {1024, 1024, 64};
constexpr Sizes small = {64, 64, 16};
constexpr Row rows[] = {
    {"whole", big, big, {0, 1, 2}},
    {"crop", big, {512, 512, 32}, {0, 1, 2}},
    {"(1,0,2)", big, big, {1, 0, 2}},
    {"(2,1,0)", big, big, {2, 1, 0}},
    {"crop (1,0,2)", big, {500, 500, 32}, {1, 0, 2}},
    {"slice (1,2)", big, {1, 1024, 64}, {1, 2, 0}},
    {"rows of 3", {8, 1024, 1024}, {3, 1024, 1024}, {0, 1, 2}},
    {"3 planes interleaved", {1024, 1024, 3}, {1024, 1024, 3}, {2, 0, 1}},
    {"3 planes apart", {3, 1024, 1024}, {3, 1024, 1024}, {1, 2, 0}},
    {"small (1,0,2)", small, small, {1, 0, 2}},
    {"one element", small, {1, 1, 1}, {0, 1, 2}},
};

long long product(const Sizes& sizes) {
  return std::accumulate(sizes.begin(), sizes.end(), 1LL, std::multiplies<>());
}

class Copy {
 public:
  Copy(const Row& row, int type)
      : type_(type),
        source_(static_cast<std::size_t>(product(row.stack)) * 2, 1),
        destination_(static_cast<std::size_t>(product(row.part) * vrel_dt_get_size(type)), 0),
        elements_(product(row.part)) {
    const Sizes strides = {2, 2 * row.stack[0], 2 * row.stack[0] * row.stack[1]};
    long long stride = vrel_dt_get_size(type);
    for (const std::size_t axis : row.permutation) {
      axes_.insert(axes_.end(), {row.part[axis], strides[axis], stride});
      stride *= row.part[axis];
    }
  }

  bool run() {
    return copy_box_entry(4, type_, source_.data(), destination_.data(), axes_.data(), 3) == 0;
  }
  long long elements() const { return elements_; }
  long long traffic() const { return 2 * elements_ + static_cast<long long>(destination_.size()); }

 private:
  int type_;
  std::vector<unsigned char> source_;
  std::vector<unsigned char> destination_;
  long long elements_;
  std::vector<long long> axes_;
};

void report(benchmark::State& state, const Copy& copy) {
  state.SetBytesProcessed(copy.traffic() * static_cast<std::int64_t>(state.iterations()));
  state.SetItemsProcessed(copy.elements() * static_cast<std::int64_t>(state.iterations()));
}

void time_copy(benchmark::State& state, const Row& row, int type) {
  Copy copy(row, type);
  if (!copy.run()) return state.SkipWithError("not copied");
  for (auto _ : state) {
    copy.run();
    benchmark::ClobberMemory();
  }
  report(state, copy);
}

void time_memcpy(benchmark::State& state, const Row& row, int type) {
  const Copy copy(row, type);
  const std::vector<unsigned char> from(static_cast<std::size_t>(copy.traffic() / 2), 2);
  std::vector<unsigned char> to(from.size(), 1);
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), from.size());
    benchmark::ClobberMemory();
  }
  report(state, copy);
}

}  // namespace

int main(int argc, char** argv) {
  for (const Row& row : rows)
    for (const int type : {4, 64}) {
      const std::string name = std::string(row.name) + "/" + vrel_dt_get_name(type);
      benchmark::RegisterBenchmark((name + "/copy").c_str(), time_copy, row, type);
      benchmark::RegisterBenchmark((name + "/memcpy").c_str(), time_memcpy, row, type);
    }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
