#include "lib/chain_walk.h"

#include <vrelio/container/chain.h>

#include <algorithm>
#include <utility>

namespace Vrel::tool {

namespace {

constexpr u64 end_of_file = ~u64{0};

}  // namespace

u64 size_of(VFile& file) {
  const u64 position = file.tell();
  const u64 size = file.seek(end_of_file);
  file.seek(position);
  return size;
}

WalkedStack read_stack_at(VFile& file, u64 position) {
  WalkedStack stack;
  file.seek(position);
  try {
    read_stack_record(file, stack.record);
  } catch (const VrelError& error) {
    if (error.get_oserr_id() > 0) throw;
    stack.error = error;
  }
  stack.record.stack_position = position;
  stack.end = file.tell();
  return stack;
}

ChainWalk::ChainWalk(VFile& file, const FileRecord& start, FileExtents& extents)
    : file_(file),
      extents_(extents),
      file_size_(size_of(file)),
      budget_(file_size_),
      link_position_(start.file_position + first_stack_offset),
      target_(start.header.first_stack) {}

std::optional<WalkedStack> ChainWalk::next() {
  if (target_ == 0) return std::nullopt;
  if (const std::optional<std::string> fault = fault_of_link()) {
    broken_link_ = BrokenLink{link_position_, *fault};
    target_ = 0;
    return std::nullopt;
  }
  WalkedStack stack = read_stack_at(file_, target_);
  stack.index = index_++;
  take_extent(stack);
  link_position_ = target_ + next_stack_offset;
  target_ = stack.has_header() ? stack.record.header.next_stack : 0;
  pay_for(stack);
  return stack;
}

std::optional<std::string> ChainWalk::fault_of_link() const {
  const std::string lead = "The link leads to " + std::to_string(target_) + ", ";
  if (target_ >= file_size_) return lead + "behind the end of the file";
  if (extents_.overlaps({target_, target_})) return lead + "into what was read already";
  return std::nullopt;
}

// Of a stack that cannot be read whole the samples are known at most.
void ChainWalk::take_extent(const WalkedStack& stack) {
  Extent extent{stack.record.stack_position, stack.end};
  if (stack.error) {
    const bool inside =
        stack.data_end() >= stack.record.data_position && stack.data_end() <= file_size_;
    extent.end = !stack.has_header() ? extent.begin
                 : inside            ? stack.data_end()
                                     : stack.record.data_position;
  }
  extent.end = std::min(extent.end, file_size_);
  const bool is_over_another = extents_.overlaps(extent);
  extents_.add(extent);
  if (!is_over_another) return;
  broken_link_ = BrokenLink{link_position_, "The stack at " + std::to_string(extent.begin) +
                                                " lies over what was read already"};
}

// What a broken stack has made us read can be read again by way of the next one.
void ChainWalk::pay_for(const WalkedStack& stack) {
  if (broken_link_) target_ = 0;
  if (!stack.error || stack.end <= stack.data_end()) return;
  const u64 cost = stack.end - stack.data_end();
  if (cost > budget_) target_ = 0;
  budget_ -= std::min(cost, budget_);
}

}  // namespace Vrel::tool
