// vrel_dt_convert beside memcpy of half the bytes that it reads and writes, with a destination in
// the cache and one far beyond it. convert_numpy.py measures it beside numpy.
#include <benchmark/benchmark.h>
#include <vrelio/foundation/convert.h>
#include <vrelio/foundation/data_type.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace {

struct Pair {
  int source;
  int destination;
};

constexpr Pair pairs[] = {{1, 4},   {4, 64}, {64, 4}, {32, 128}, {128, 0x40000040}, {128, 64},
                          {64, 16}, {1, 1},  {4, 4},  {64, 64},  {128, 128}};

constexpr std::size_t destination_sizes[] = {256 << 10, 256 << 20};

struct Buffers {
  Buffers(const Pair& pair, std::size_t size)
      : count(size / size_of(pair.destination)),
        source(count * size_of(pair.source), 0),
        destination(size, 1) {}

  static std::size_t size_of(int id) { return static_cast<std::size_t>(vrel_dt_get_size(id)); }
  std::size_t traffic() const { return source.size() + destination.size(); }

  std::size_t count;
  std::vector<unsigned char> source;
  std::vector<unsigned char> destination;
};

bool convert(const Pair& pair, Buffers& buffers) {
  return vrel_dt_convert(pair.source, pair.destination, buffers.source.data(),
                         buffers.destination.data(), static_cast<int>(buffers.count), nullptr,
                         nullptr) == 0;
}

void report(benchmark::State& state, const Buffers& buffers) {
  state.SetBytesProcessed(static_cast<std::int64_t>(buffers.traffic()) *
                          static_cast<std::int64_t>(state.iterations()));
}

// Zeros convert to zeros in every pair.
bool gives_zeros(const Pair& pair, Buffers& buffers) {
  return convert(pair, buffers) &&
         buffers.destination == std::vector<unsigned char>(buffers.destination.size(), 0);
}

void time_convert(benchmark::State& state, const Pair& pair, std::size_t size) {
  Buffers buffers(pair, size);
  if (!gives_zeros(pair, buffers)) return state.SkipWithError("wrong result");
  for (auto _ : state) {
    convert(pair, buffers);
    benchmark::ClobberMemory();
  }
  report(state, buffers);
}

void time_memcpy(benchmark::State& state, const Pair& pair, std::size_t size) {
  Buffers buffers(pair, size);
  const std::vector<unsigned char> from(buffers.traffic() / 2, 2);
  std::vector<unsigned char> to(from.size(), 1);
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), from.size());
    benchmark::ClobberMemory();
  }
  report(state, buffers);
}

void add_row(const Pair& pair, std::size_t size) {
  const std::string row = std::string(vrel_dt_get_name(pair.source)) + "->" +
                          vrel_dt_get_name(pair.destination) +
                          (size > (1 << 20) ? "/beyond cache" : "/in cache");
  benchmark::RegisterBenchmark((row + "/convert").c_str(), time_convert, pair, size);
  benchmark::RegisterBenchmark((row + "/memcpy").c_str(), time_memcpy, pair, size);
}

}  // namespace

int main(int argc, char** argv) {
  for (const std::size_t size : destination_sizes)
    for (const Pair& pair : pairs) add_row(pair, size);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
