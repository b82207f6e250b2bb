// Compares trees, with the values that are still to be compared in a list of its own.
#include <vrelio/prop/prop.h>

#include <algorithm>
#include <set>
#include <type_traits>
#include <utility>
#include <vector>

#include "prop/holder_internal.h"
#include "prop/kind_list_internal.h"

using namespace Vrel::detail;

namespace {

using Pairs = std::vector<std::pair<const VProp*, const VProp*>>;

template <class T>
bool is_equal(const T& left, const T& right, Pairs&) {
  return left == right;
}

bool is_equal(const _s_vrel_RGB& left, const _s_vrel_RGB& right, Pairs&) {
  return left.r == right.r && left.g == right.g && left.b == right.b;
}

bool is_equal(const VPropstring& left, const VPropstring& right, Pairs&) {
  return std::wstring_view(left) == std::wstring_view(right);
}

bool is_equal(const VProp& left, const VProp& right, Pairs& open) {
  open.emplace_back(&left, &right);
  return true;
}

bool is_equal(const VPropstruct& left, const VPropstruct& right, Pairs& open) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&open](const auto& a, const auto& b) {
                      return a.first == b.first && is_equal(a.second, b.second, open);
                    });
}

template <class T>
bool is_equal(const VProparray<T>& left, const VProparray<T>& right, Pairs& open) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&open](const auto& a, const auto& b) { return is_equal(a, b, open); });
}

// Leaves the values that a container holds for later.
bool is_equal_so_far(const VProp& left, const VProp& right, Pairs& open) {
  if (left.get_id() != right.get_id()) return false;
  return with_kind(
      left.get_id(),
      [&](auto of) {
        using T = typename decltype(of)::type;
        return is_equal(left.get<T>(), right.get<T>(), open);
      },
      [] { return true; });
}

// Of containers alone: to compare anything else takes less than to look whether that was done.
bool is_shared(const VProp::placeholder* content) {
  if (content == nullptr || content->use_count == 1) return false;
  const int id = content->get_id();
  return id == id_struct || id == id_cell_array || id == id_struct_array;
}

}  // namespace

// Two containers that are met again have been compared, or their values wait for it. Without that, a tree
// in which each level holds the next one twice would double the work at each. Only what is shared leads to
// that.
bool VProp::operator==(const VProp& other) const {
  Pairs open = {{this, &other}};
  std::set<std::pair<const placeholder*, const placeholder*>> met;
  while (!open.empty()) {
    const auto [left, right] = open.back();
    open.pop_back();
    const bool may_be_met_again = is_shared(left->content_) || is_shared(right->content_);
    if (may_be_met_again && !met.emplace(left->content_, right->content_).second) continue;
    if (!is_equal_so_far(*left, *right, open)) return false;
  }
  return true;
}
