// A property tree of a million leaves beside the same tree of a JSON library: building, copying, changing
// one leaf after copying, destroying, and memory.
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "support/peer_comparison.h"

namespace {

constexpr unsigned int width = 100;
constexpr std::size_t leaves = std::size_t{width} * width * width;
constexpr int changes = 100000;

std::string name(unsigned int number) { return "f" + std::to_string(number); }

// Structs in cell arrays in a struct.
std::unique_ptr<VProp> build() {
  auto tree = std::make_unique<VProp>();
  for (unsigned int i = 0; i < width; ++i) {
    VProp& cells = (*tree)[name(i)];
    for (unsigned int j = 0; j < width; ++j) {
      VPropstruct& fields = cells(j).get<VPropstruct>();
      for (unsigned int k = 0; k < width; ++k) fields.emplace_back(name(k), VProp(0.5 * k));
    }
  }
  return tree;
}

std::unique_ptr<nlohmann::json> build_peer() {
  auto tree = std::make_unique<nlohmann::json>();
  for (unsigned int i = 0; i < width; ++i) {
    nlohmann::json& items = (*tree)[name(i)];
    for (unsigned int j = 0; j < width; ++j) {
      nlohmann::json fields;
      for (unsigned int k = 0; k < width; ++k) fields[name(k)] = 0.5 * k;
      items.push_back(std::move(fields));
    }
  }
  return tree;
}

void require_same_trees() {
  const auto ours = build();
  const auto peer = build_peer();
  const VProp& read = *ours;
  require(read["f7{9}.f11"].get<double>() == (*peer)["f7"][9]["f11"].get<double>(),
          "the trees differ");
  VProp copy(read);
  copy["f7{9}.f11"] = -1.0;
  require(read["f7{9}.f11"].get<double>() == 5.5, "a copy is not its own");
}

void print_row(const char* what, const char* unit, double ours, double peer) {
  std::printf("%-34s %12.4g %12.4g %-3s %10.2f\n", what, ours, peer, unit, peer / ours);
  std::fflush(stdout);
}

template <class Ours, class Peer>
void compare_times(const char* what, double scale, const char* unit, Ours ours, Peer peer) {
  double best_ours = seconds_apart(ours);
  double best_peer = seconds_apart(peer);
  for (int i = 1; i < comparison_rounds; ++i) {
    best_ours = std::min(best_ours, seconds_apart(ours));
    best_peer = std::min(best_peer, seconds_apart(peer));
  }
  print_row(what, unit, best_ours * scale, best_peer * scale);
}

void compare_building() {
  std::unique_ptr<VProp> ours;
  std::unique_ptr<nlohmann::json> peer;
  compare_times(
      "build", 1e3, "ms", [&] { ours = build(); }, [&] { peer = build_peer(); });
}

// In one process, where the pages of the trees are there already.
template <class Ours, class Peer>
void compare_short_times(const char* what, int ours_count, int peer_count, Ours ours, Peer peer) {
  const auto each = [](int count, const auto& work) {
    double best = 1e9;
    for (int round = 0; round < comparison_rounds; ++round) {
      best = std::min(best, seconds([&] {
                        for (int i = 0; i < count; ++i) work();
                      }));
    }
    return best / count * 1e9;
  };
  print_row(what, "ns", each(ours_count, ours), each(peer_count, peer));
}

void compare_with_trees() {
  auto ours = build();
  auto peer = build_peer();
  compare_short_times(
      "copy the tree and drop it", 1000000, 1, [&] { const VProp copy(std::as_const(*ours)); },
      [&] { const nlohmann::json copy(*peer); });
  compare_short_times(
      "change one leaf of a fresh copy", 1000, 1,
      [&] {
        VProp copy(std::as_const(*ours));
        copy["f50{50}.f50"] = 1.0;
      },
      [&] {
        nlohmann::json copy(*peer);
        copy["f50"][50]["f50"] = 1.0;
      });
  compare_short_times(
      "change one leaf", changes, changes, [&] { (*ours)["f50{50}.f50"] = 1.0; },
      [&] { (*peer)["f50"][50]["f50"] = 1.0; });
  compare_times(
      "destroy", 1e3, "ms", [&] { ours.reset(); }, [&] { peer.reset(); });
}

}  // namespace

int main() {
  require_same_trees();
  std::printf("%-34s %12s %12s %14s\n", "a tree of 1,000,000 leaves", "ours", "peer", "ratio");
  compare_building();
  compare_with_trees();
  print_row("bytes per leaf", "", bytes_per_node(build, leaves),
            bytes_per_node(build_peer, leaves));
}
