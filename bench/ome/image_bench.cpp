// What a view of an image costs beside its bare tree: a description of a stack makes one of each. Bytes
// are those of the heap and of the objects themselves.
#include <benchmark/benchmark.h>
#include <vrelio/ome/image.h>

#include <memory>
#include <string>

#include "support/peer_comparison.h"

namespace {

using Image = Ome::Image<Json::SignalingReference>;

// The tree that the view of an image makes, by hand.
void fill(Json::Value& tree) {
  for (const char* const key : {"ID", "Name"}) tree[key];
  Json::Value& content = tree[""];
  for (const char* const key : {"ome:AcquisitionDate", "ome:Description"}) content[key];
  Json::Value& pixels = content["ome:Pixels"];
  for (const char* const key : {"ID", "DimensionOrder", "Type", "SignificantBits", "Interleaved",
                                "BigEndian", "SizeX", "SizeY", "SizeZ", "SizeC", "SizeT"}) {
    pixels[key];
  }
  for (const char* const key : {"PhysicalSizeX", "PhysicalSizeY", "PhysicalSizeZ"}) {
    pixels[key] = 1.0;
    pixels[std::string(key) + "Unit"] = "pixel";
  }
  for (const char* const key : {"TimeIncrement", "TimeIncrementUnit"}) pixels[key];
  Json::Value& pixels_content = pixels[""];
  pixels_content["ome:MetadataOnly"].map();
  for (const char* const key : {"ome:Channel", "ome:Plane"}) pixels_content[key];
}

struct Viewed {
  Json::Value tree;
  Image view{&tree};
};

struct Bare {
  Bare() { fill(tree); }
  Json::Value tree;
};

template <class T>
void make_and_destroy(benchmark::State& state) {
  for (auto _ : state) {
    T made;
    benchmark::DoNotOptimize(&made);
  }
  state.counters["bytes"] = bytes_per_node([] { return std::make_unique<T>(); }, 1);
}

void view_again(benchmark::State& state) {
  Viewed viewed;
  for (auto _ : state) {
    Image image(&viewed.tree);
    benchmark::DoNotOptimize(&image);
  }
  state.counters["bytes"] = sizeof(Image);
}

void assign(benchmark::State& state) {
  Viewed viewed;
  int size = 1;
  for (auto _ : state) {
    viewed.view.SizeX = size;
    size = size % 1000 + 1;
  }
}

void append_planes(benchmark::State& state) {
  const auto count = state.range(0);
  for (auto _ : state) {
    Viewed viewed;
    for (auto i = count; i > 0; --i) viewed.view.Plane.append();
  }
  state.SetItemsProcessed(state.iterations() * count);
}

void go_through_planes(benchmark::State& state) {
  Viewed viewed;
  const auto count = static_cast<std::size_t>(state.range(0));
  for (std::size_t i = count; i > 0; --i) viewed.view.Plane.append();
  for (auto _ : state) {
    for (std::size_t i = 0; i < count; ++i) benchmark::DoNotOptimize(viewed.view.Plane[i].get());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

bool are_trees_equal() {
  const Viewed viewed;
  const Bare bare;
  return viewed.tree == bare.tree;
}

BENCHMARK_TEMPLATE(make_and_destroy, Viewed)->Name("tree with its view");
BENCHMARK_TEMPLATE(make_and_destroy, Bare)->Name("bare tree");
BENCHMARK(view_again)->Name("view of a tree that is there");
BENCHMARK(assign)->Name("assign to a field");
BENCHMARK(append_planes)->Name("append planes")->Arg(1000);
BENCHMARK(go_through_planes)->Name("planes by index")->Arg(1000);

}  // namespace

int main(int count, char** arguments) {
  require(are_trees_equal(), "the view makes another tree than is made by hand");
  benchmark::Initialize(&count, arguments);
  benchmark::RunSpecifiedBenchmarks();
}
