#include <vrelio/prop/prop_array.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "foundation/raise_internal.h"
#include "prop/shape_internal.h"

using namespace Vrel::detail;

namespace Vrel::detail {

std::uint64_t element_count(const VProparrayBase::index_list& shape) {
  if (shape.empty() || std::find(shape.begin(), shape.end(), 0U) != shape.end()) return 0;
  std::uint64_t count = 1;
  for (const unsigned int size : shape) {
    count *= size;
    if (count > highest_count) return count;
  }
  return count;
}

}  // namespace Vrel::detail

namespace {

unsigned int countable(std::uint64_t count) {
  if (count > highest_count) raise(id_plain, "Property array too large!");
  return static_cast<unsigned int>(count);
}

bool is_row(const VProparrayBase::index_list& shape) {
  const VProparrayBase::index_list nothing = {0, 0};
  return shape == nothing || (shape.size() == 2 && shape[0] == 1);
}

// `alone` goes in front of a single index that is not 0.
VProparrayBase::index_list given(unsigned int i, unsigned int j, unsigned int k, unsigned int l,
                                 unsigned int alone) {
  constexpr unsigned int not_given = VProparrayBase::not_given;
  if (i == not_given) return {};
  if (j == not_given) return {i == 0 ? 0 : alone, i};
  if (k == not_given) return {i, j};
  if (l == not_given) return {i, j, k};
  return {i, j, k, l};
}

// Where a position is in a shape, which grows to it where it may.
class Locator {
 public:
  using index_list = VProparrayBase::index_list;

  // `is_empty`: no element would move if any dimension grew.
  Locator(index_list shape, bool grow, bool is_empty)
      : shape_(std::move(shape)), rank_(shape_.size()), grow_(grow), is_empty_(is_empty) {}

  unsigned int locate(const index_list& pos) {
    match_rank(pos.size());
    // Both fit unless the array would grow beyond what can be counted, which is refused later.
    unsigned int idx = 0;
    unsigned int stride = 1;
    for (std::size_t d = 0; d < pos.size(); ++d) {
      if (pos[d] >= shape_[d]) grow_to(d, pos[d]);
      idx += pos[d] * stride;
      stride *= shape_[d];
    }
    return idx;
  }

  bool has_grown() const { return has_grown_; }
  const index_list& shape() const { return shape_; }

 private:
  void match_rank(std::size_t rank) {
    const int ours = static_cast<int>(rank_);
    const int wanted = static_cast<int>(rank);
    if (rank < rank_) raise(id_plain, "Input rank '%d' too low (< '%d')!", wanted, ours);
    if (rank > rank_ && !grow_) {
      raise(id_plain, "Input rank '%d' too high (> '%d')!", wanted, ours);
    }
    if (rank > rank_) has_grown_ = true;
    shape_.resize(rank, 1);
  }

  // Elements keep their places if only what lies behind them grows.
  void grow_to(std::size_t d, unsigned int index) {
    const bool is_last = d + 1 == rank_;
    if (!grow_ || !(is_empty_ || is_last)) {
      raise(id_plain, "Index %d out of bounds! (%d >= %d)!", static_cast<int>(d),
            static_cast<int>(index), static_cast<int>(shape_[d]));
    }
    shape_[d] = countable(std::uint64_t{index} + 1);
    has_grown_ = true;
  }

  index_list shape_;
  std::size_t rank_;
  bool grow_;
  bool is_empty_;
  bool has_grown_ = false;
};

}  // namespace

unsigned int VProparrayBase::get_rank() const {
  return static_cast<unsigned int>(get_size(true).size());
}

VProparrayBase::index_list VProparrayBase::get_size(bool check) const {
  index_list row = val2size(count(), not_given, not_given, not_given);
  if (size_.empty()) return row;
  if (!check || element_count(size_) == count()) return size_;
  if (is_row(size_)) return row;
  if (size_.size() == 1) return {count()};
  raise(id_plain, "Invalid size vector in property array!");
}

void VProparrayBase::set_size(const index_list& size, set_mode mode) {
  if (mode == set_mode_clear) {
    index_list taken = size;
    resize(VProparrayBase::size(size), true);
    size_.swap(taken);
    return;
  }
  const bool fits = size.empty() || element_count(size) == count();
  if (!fits && mode == set_mode_checked) raise(id_plain, "Invalid size set!");
  index_list taken = size;
  if (!fits && mode == set_mode_resize) {
    get_size(true);  // a stored shape that fits nothing is not replaced unseen
    resize(VProparrayBase::size(size), false);
  }
  size_.swap(taken);
}

void VProparrayBase::set_size(unsigned int i, unsigned int j, unsigned int k, unsigned int l,
                              set_mode mode) {
  set_size(val2size(i, j, k, l), mode);
}

unsigned int VProparrayBase::get_idx(const index_list& pos) const {
  return Locator(get_size(true), false, false).locate(pos);
}

unsigned int VProparrayBase::get_idx(const index_list& pos, bool grow) {
  Locator locator(get_size(true), grow, element_count(size_) == 0);
  const unsigned int idx = locator.locate(pos);
  if (locator.has_grown()) set_size(locator.shape(), set_mode_resize);
  return idx;
}

unsigned int VProparrayBase::get_idx(unsigned int i, unsigned int j, unsigned int k,
                                     unsigned int l) const {
  return get_idx(val2pos(i, j, k, l));
}

unsigned int VProparrayBase::get_idx(unsigned int i, unsigned int j, unsigned int k, unsigned int l,
                                     bool grow) {
  return get_idx(val2pos(i, j, k, l), grow);
}

VProparrayBase::index_list VProparrayBase::get_pos(unsigned int idx) const {
  if (size_.empty()) return val2size(idx, not_given, not_given, not_given);
  index_list pos;
  for (std::size_t d = 0; d + 1 < size_.size(); ++d) {
    const unsigned int size = std::max(size_[d], 1U);
    pos.push_back(idx % size);
    idx /= size;
  }
  pos.push_back(idx);
  return pos;
}

unsigned int VProparrayBase::size(const index_list& shape) {
  return countable(element_count(shape));
}

VProparrayBase::index_list VProparrayBase::val2size(unsigned int i, unsigned int j, unsigned int k,
                                                    unsigned int l) {
  return given(i, j, k, l, 1);
}

VProparrayBase::index_list VProparrayBase::val2pos(unsigned int i, unsigned int j, unsigned int k,
                                                   unsigned int l) {
  return given(i, j, k, l, 0);
}

VProparrayBase::index_list VProparrayBase::ptr2size(unsigned int n, const unsigned int* values) {
  return {values, values + n};
}

VProparrayBase::index_list VProparrayBase::ptr2pos(unsigned int n, const unsigned int* values) {
  return {values, values + n};
}
