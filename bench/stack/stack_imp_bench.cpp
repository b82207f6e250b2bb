// What a stack costs beyond its elements, and what a walk over them costs per element.
#include <benchmark/benchmark.h>
#include <vrelio/stack/iterator.h>
#include <vrelio/stack/stack_imp.h>

#include <cstdint>
#include <memory>
#include <numeric>
#include <vector>

#include "support/peer_comparison.h"

namespace {

using Sizes = std::vector<unsigned int>;

VStackImp stack_of(const Sizes& sizes) {
  return VStackImp(Ome::type_uint16, sizes, Ome::order_XYZTC);
}

// Bytes are those of the heap and of the object itself, but for the elements.
void make_and_destroy(benchmark::State& state) {
  const Sizes sizes = {4, 4, 4};
  for (auto _ : state) {
    VStackImp stack = stack_of(sizes);
    benchmark::DoNotOptimize(&stack);
  }
  state.counters["bytes"] =
      bytes_per_node([&] { return std::make_unique<VStackImp>(stack_of(sizes)); }, 1) - 128;
}

void describe_a_copy(benchmark::State& state) {
  const VStackImp stack = stack_of({4, 4, 4});
  for (auto _ : state) {
    VStackImp copy(stack);
    benchmark::DoNotOptimize(&copy);
  }
}

// A copy of 64 elements: all of it is looking at regions and descriptions.
void copy_a_small_region(benchmark::State& state) {
  const VStackImp stack = stack_of({8, 8, 8});
  VStackRegion region;
  region.create(&stack, 0);
  region.to = {4, 4, 4};
  VStackImp part(0);
  for (auto _ : state) {
    part.copy(&stack, region);
    benchmark::DoNotOptimize(part.get_data_ptr());
  }
}

void report_elements(benchmark::State& state, const VStackImp& stack) {
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) *
                          stack.get_number_of_elements());
}

template <class T>
void walk(benchmark::State& state) {
  const VStackImp stack = stack_of({256, 256, 4});
  VStackRegion region;
  region.create(&stack, 0);
  for (auto _ : state) {
    T sum = 0;
    VStackInterface::const_iterator<unsigned short> it(&stack, region);
    for (; !it.at_end; it.advance()) {
      T value;
      it.read(value);
      sum = static_cast<T>(sum + value);
    }
    benchmark::DoNotOptimize(sum);
  }
  report_elements(state, stack);
}

// By the factory, which knows the type of the elements at run time alone.
void walk_by_factory(benchmark::State& state) {
  const VStackImp stack = stack_of({256, 256, 4});
  VStackRegion region;
  region.create(&stack, 0);
  for (auto _ : state) {
    double sum = 0;
    for (const auto it = VStackInterface::make_iterator(&stack, region); !it->at_end;
         it->advance()) {
      double value = 0;
      it->read(value);
      sum += value;
    }
    benchmark::DoNotOptimize(sum);
  }
  report_elements(state, stack);
}

// What a loop over the buffer costs.
void loop(benchmark::State& state) {
  const VStackImp stack = stack_of({256, 256, 4});
  for (auto _ : state) {
    const auto* const elements = reinterpret_cast<const unsigned short*>(stack.get_data_ptr());
    double sum = std::accumulate(elements, elements + stack.get_number_of_elements(), 0.0);
    benchmark::DoNotOptimize(sum);
  }
  report_elements(state, stack);
}

BENCHMARK(make_and_destroy);
BENCHMARK(describe_a_copy);
BENCHMARK(copy_a_small_region);
BENCHMARK(walk<unsigned short>);
BENCHMARK(walk<double>);
BENCHMARK(walk_by_factory);
BENCHMARK(loop);

}  // namespace

BENCHMARK_MAIN();
