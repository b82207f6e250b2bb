#include "lib/unlinked_stacks.h"

#include <vrelio/foundation/data_type.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "lib/verify_samples.h"

namespace Vrel::tool {

namespace {

constexpr std::string_view magic("VREL_BF_STACK\n\xFF\xFF", 16);
constexpr u64 window_size = 256u << 10;

// Fields of which a reader believes anything, but a writer puts down only this.
bool is_plausible(const StackRecord& stack, u64 limit) {
  const StackHeader& header = stack.header;
  return stack.data_position != 0 && stack.data_position <= limit &&
         header.format_version <= newest_stack_version && vrel_dt_get_size(header.data_type) != 0 &&
         header.compression_type <= 1 && header.has_data <= 1 && header.reserved == 0;
}

bool is_data_plausible(const StackRecord& stack) {
  const u64 samples = size_of_samples(stack);
  if (stack.header.data_length == 0) return stack.header.has_data == 0 || samples == 0;
  return is_zipped(stack.header) || stack.header.data_length == samples;
}

bool is_whole(const WalkedStack& stack, u64 limit) {
  if (stack.error || stack.end > limit || !is_data_plausible(stack.record)) return false;
  if (stack.record.header.format_version == 0) return stack.record.header.data_length != 0;
  return stack.record.footer.stack_end == stack.end;
}

// Where to look on behind a stack that was cut off.
u64 end_of_samples(const StackRecord& stack, u64 limit) {
  const u64 room = limit - stack.data_position;
  const u64 length = stack.header.data_length;
  if (length != 0) return stack.data_position + (length <= room ? length : 0);
  const u64 samples = size_of_samples(stack);
  const bool is_known = !is_zipped(stack.header) && samples != 0;
  return is_known ? stack.data_position + std::min(samples, room) : limit;
}

}  // namespace

UnlinkedStacks::UnlinkedStacks(VFile& file, std::vector<Extent> gaps)
    : file_(file), budget_(2 * size_of(file)), gaps_(std::move(gaps)) {}

std::optional<UnlinkedStack> UnlinkedStacks::next() {
  for (; gap_ < gaps_.size(); ++gap_) {
    Extent& gap = gaps_[gap_];
    while (const std::optional<u64> position = find_magic(gap)) {
      gap.begin = *position + 1;
      std::optional<UnlinkedStack> found = examine(*position, gap.end);
      if (!found) continue;
      gap.begin = found->is_whole ? found->stack.end : end_of_samples(found->stack.record, gap.end);
      gap.begin = std::max(gap.begin, *position + 1);
      return found;
    }
  }
  return std::nullopt;
}

std::optional<u64> UnlinkedStacks::find_magic(const Extent& gap) {
  if (budget_ == 0) return std::nullopt;
  for (u64 begin = gap.begin; begin < gap.end && gap.end - begin >= magic.size();) {
    const u64 window_end = window_begin_ + window_.size();
    const bool is_held = begin >= window_begin_ && begin + magic.size() <= window_end;
    if (!is_held) {
      window_.resize(std::min(window_size, gap.end - begin));
      window_begin_ = begin;
      file_.seek(begin);
      file_.read(window_.data(), static_cast<unsigned>(window_.size()));
    }
    const std::string_view held(window_.data(), window_.size());
    const std::size_t found = held.find(magic, begin - window_begin_);
    const u64 position = window_begin_ + found;
    if (found != std::string_view::npos) {
      if (position + magic.size() <= gap.end) return position;
      return std::nullopt;
    }
    begin = window_begin_ + window_.size() - (magic.size() - 1);
    if (window_begin_ + window_.size() >= gap.end) return std::nullopt;
  }
  return std::nullopt;
}

std::optional<UnlinkedStack> UnlinkedStacks::examine(u64 position, u64 limit) {
  UnlinkedStack found{read_stack_at(file_, position), false, limit};
  const u64 read = found.stack.end - std::min(found.stack.end, found.stack.data_end());
  budget_ -= std::min(budget_, read + 1);
  if (!is_plausible(found.stack.record, limit)) return std::nullopt;
  found.is_whole = is_whole(found.stack, limit);
  return found;
}

}  // namespace Vrel::tool
