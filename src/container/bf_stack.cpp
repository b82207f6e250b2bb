#include <vrelio/container/bf_stack.h>
#include <vrelio/foundation/data_type.h>

#include <algorithm>
#include <functional>
#include <numeric>

#include "container/bf_file_imp_internal.h"
#include "container/bf_stack_imp_internal.h"
#include "container/format_internal.h"
#include "container/tags_internal.h"
#include "foundation/raise_internal.h"
#include "stack/stack_errors_internal.h"

VBFStackInterface::~VBFStackInterface() = default;

namespace Vrel::detail {

namespace {

// The samples of one step along the last axis. Behind a zero among the sizes the others can be anything, but
// the product stays zero.
unsigned count_samples_per_step(const std::vector<unsigned>& sizes) {
  return std::accumulate(sizes.begin(), sizes.end() - 1, 1U, std::multiplies<>());
}

}  // namespace

VBFStackImp::VBFStackImp(VBFFileImp* file, bool empty)
    : VStackInfoImp(0U), file_(file), empty_(empty) {}

VBFStackImp::VBFStackImp(VBFFileImp* file, StackRecord&& record)
    : VStackInfoImp(0U), file_(file), record_(std::move(record)), state_(state_complete) {
  empty_ = record_.header.data_length == 0;
  take_description(record_);
  lock();
}

VBFStackImp::VBFStackImp(VBFFileImp* file, const DblHeader& header)
    : VStackInfoImp(0U), file_(file), state_(state_complete) {
  take_description(header);
  lock();
}

VBFStackImp::VBFStackImp(const VBFStackImp& other)
    : VStackInfoInterface(other),
      VBFStackInterface(other),
      VStackInfoImp(other),
      file_(other.file_),
      record_(other.record_),
      empty_(other.empty_),
      state_(other.state_) {}

VBFStackImp::~VBFStackImp() = default;

void VBFStackImp::cut_off() noexcept {
  file_ = nullptr;
  segment_.end();
  reader_.reset();
}

void VBFStackImp::check_file() const {
  if (file_ == nullptr) raise(id_plain, "Cannot access VBFStack, file has been closed!");
}

template <class Create>
void VBFStackImp::create_by(Create create, bool growing) {
  if (state_ != state_created) raise(id_plain, "Cannot set data layout!");
  create();
  if (get_rank() > max_rank) raise_unsupported_number_of_sizes();
  growing_ = growing;
  samples_per_step_ = growing ? count_samples_per_step(get_sizes()) : 1;
  state_ = state_ready;
}

void VBFStackImp::create(const std::vector<unsigned int>& sizes, int type) {
  const bool growing = !sizes.empty() && sizes.back() == 0;
  create_by([&] { VStackInfoImp::create(sizes, type); }, growing);
}

// The base creates by the sizes first, which makes this stack ready before it has the rest.
void VBFStackImp::create(const VStackInfoInterface* info, int type) {
  create_by(
      [&] {
        VStackInfoImp::create(info->get_sizes(), type == 0 ? info->get_dt() : type);
        set_info(info);
      },
      false);
}

void VBFStackImp::create(const VStackInfoInterface* info, const VStackRegion& region) {
  create_by([&] { VStackInfoImp::create(info, region); }, false);
}

std::vector<std::string> VBFStackImp::get_tag_keys() const {
  std::vector<std::string> keys;
  keys.reserve(record_.tags.size());
  for (const auto& tag : record_.tags) keys.push_back(tag.first);
  return keys;
}

void VBFStackImp::set_tag(const std::string& key, const std::string& text) {
  if (key.empty()) raise_empty_tag_key();
  record_.tags[key] = text;
}

void VBFStackImp::set_tag(const std::string& key, int type, const void* value) {
  set_tag(key, make_tag_text(type, value));
}

std::string VBFStackImp::get_tag(const std::string& key) {
  const auto found = record_.tags.find(key);
  if (found == record_.tags.end()) raise(id_plain, "Tag with key '%s' not found!", key.c_str());
  return found->second;
}

void VBFStackImp::get_tag(const std::string& key, int type, void* value) {
  read_tag_text(get_tag(key), type, value);
}

void VBFStackImp::set_compression(int type, int level) {
  if (state_ != state_created && state_ != state_ready) {
    raise(id_plain, "Cannot change compression mode!");
  }
  record_.header.compression_type = static_cast<std::uint32_t>(type);
  record_.header.compression_level = level;
}

void VBFStackImp::get_compression(int& type, int& level) const {
  type = static_cast<int>(record_.header.compression_type);
  level = record_.header.compression_level;
}

void VBFStackImp::set_flush_block_size(unsigned int size) {
  if (state_ != state_ready) {
    raise(id_plain, "Flush block size can only be set before starting to write!");
  }
  flush_block_size_ = size;
}

void VBFStackImp::copy_units(const VStackInfoInterface& from, VStackInfoInterface& to) {
  for (unsigned int axis = 0; axis < from.get_rank(); ++axis) {
    to.set_units(axis, get_stored_units(from, axis));
  }
  to.set_data_units(from.get_data_units());
}

unsigned int VBFStackImp::get_sample_size() const {
  return static_cast<unsigned int>(vrel_dt_get_size(get_dt()));
}

// As many samples as one piece has: what is told of progress, and what is converted, is this at most.
unsigned int VBFStackImp::get_piece_length() const {
  constexpr unsigned int largest_piece = 1U << 30;
  return std::max(1U, std::min(file_->get_chunk_size(), largest_piece) / get_sample_size());
}

// As many samples as are converted at once, so that they are still in the cache when they go on.
unsigned int VBFStackImp::get_block_length(unsigned int other_sample_size) const {
  constexpr unsigned int block_size = 256U << 10;
  return block_size / std::max({1U, get_sample_size(), other_sample_size});
}

}  // namespace Vrel::detail
