#include "lib/import_target.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/ome/types.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <stdexcept>
#include <utility>

#include "lib/description.h"
#include "lib/error_report.h"
#include "lib/input_file.h"
#include "lib/ome_image.h"
#include "lib/ome_tree.h"
#include "lib/ome_units.h"
#include "lib/program_name.h"

namespace Vrel::tool {

namespace {

// What goes wrong in here goes wrong with the output.
template <class Work>
void at_output(const std::string& path, Work work) {
  try {
    work();
  } catch (const VrelError& error) {
    throw OutputError(error, path);
  }
}

std::vector<unsigned> sizes_of(const ImportStack& stack) {
  std::vector<unsigned> sizes;
  for (const ImportAxis& axis : stack.axes) sizes.push_back(axis.size);
  return sizes;
}

bool has_ome_type(int data_type) {
  try {
    Ome::get_type(data_type);
    return true;
  } catch (const std::invalid_argument&) {
    return false;
  }
}

bool has_ome_sizes(const std::vector<unsigned>& sizes) {
  constexpr std::size_t most_axes = 5;
  constexpr auto largest = static_cast<unsigned>(std::numeric_limits<int>::max());
  return sizes.size() <= most_axes &&
         std::all_of(sizes.begin(), sizes.end(), [](unsigned size) { return size <= largest; });
}

// What the OME image cannot hold is refused when it is set, and taken when it comes about: the type by
// the first write, the sizes by growing.
void create(VBFStackInterface& target, const ImportStack& stack) {
  std::vector<unsigned> sizes = sizes_of(stack);
  const bool has_samples = std::find(sizes.begin(), sizes.end(), 0U) == sizes.end();
  if (has_samples && !has_ome_sizes(sizes)) sizes.back() = 0;
  target.create(sizes, has_ome_type(stack.data_type) ? stack.data_type : 0);
}

// The length is stored also where the OME image has no place for it.
void set_length(VBFStackInterface& target, unsigned axis, double length) {
  try {
    target.set_len(axis, length);
  } catch (const std::invalid_argument&) {
  } catch (const Json::BadCast&) {
  }
}

void describe_axis(VBFStackInterface& target, unsigned number, const ImportAxis& axis) {
  if (!axis.label.empty()) target.set_label(number, axis.label);
  if (!axis.column_labels.empty()) target.set_col_labels(number, axis.column_labels);
  if (axis.length <= 0.0) return;
  set_length(target, number, axis.length);
  if (const auto unit = ome_unit(axis.unit)) target.set_units(number, *unit);
}

void describe(VBFStackInterface& target, const ImportStack& stack, const std::string& name) {
  target.set_name(name);
  target.set_description(stack.description);
  for (unsigned axis = 0; axis < stack.axes.size(); ++axis) {
    describe_axis(target, axis, stack.axes[axis]);
  }
}

void take_document(VBFFile& file, const std::string& text) {
  try {
    const Json::Value tree = read_ome_tree(text, "");
    file->meta_data().OME = *tree.find("ome:OME");
    file->meta_data().Image.size();
    file->meta_data().Instrument.size();
  } catch (const std::exception&) {
    throw VrelError(VrelError()("The OME-XML of the file cannot be read, and would be lost!")(-4));
  }
}

// The library tells no reason why a file does not open.
[[noreturn]] void raise_not_opened(const std::string& path) {
  constexpr const char* message = "Could not open file!";
  const int descriptor = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
  if (descriptor == -1) raise_output_error(path, message);
  const bool is_locked = ::flock(descriptor, LOCK_EX | LOCK_NB) != 0;
  ::close(descriptor);
  errno = is_locked ? EWOULDBLOCK : EINVAL;
  raise_output_error(path, message);
}

std::string stored_document(const std::string& path) {
  InputFile input(path);
  const Dictionary dictionary = read_description(input.get_file()).file.dictionary;
  const auto found = dictionary.find("ome_xml");
  return found == dictionary.end() ? "" : found->second;
}

}  // namespace

ImportTarget::ImportTarget(std::string path, const StackStorage& storage)
    : path_(std::move(path)), storage_(storage) {}

void ImportTarget::open_new(bool replace) {
  new_file_.emplace(path_, replace);
  at_output(path_, [&] {
    void* handle = VFile::to_handle(new_file_->descriptor());
    file_->attach(handle, VFile::mode_create);
    file_->set_creator(program_name());
  });
}

void ImportTarget::open_existing() {
  at_output(path_, [&] {
    try {
      file_.open(VPropstring(path_, VPropstring::encoding_local), VFile::mode_modify);
    } catch (const VrelError&) {
      if (!file_->is_open()) raise_not_opened(path_);
      throw;
    }
    const std::string text = stored_document(path_);
    if (!text.empty()) take_document(file_, text);
  });
}

void ImportTarget::add(const ImportStack& stack, const std::string& name,
                       const Progress& progress) {
  boost::shared_ptr<VBFStackInterface> target;
  at_output(path_, [&] { target = file_->add_stack(false); });
  target->set_compression(storage_.level == 0 ? 0 : 1, storage_.level);
  create(*target, stack);
  if (storage_.flush_size) target->set_flush_block_size(*storage_.flush_size);
  describe(*target, stack, name);
  write_samples(stack, *target, progress);
  Json::Value image = make_ome_image(stack, name, file_->meta_data().Image.size() + 1);
  file_->meta_data().Image.append(image);
  images_.push_back(std::move(image));
}

void ImportTarget::write_samples(const ImportStack& stack, VBFStackInterface& target,
                                 const Progress& progress) {
  const auto sample_size = static_cast<u64>(vrel_dt_get_size(stack.data_type));
  u64 left = count_bytes(stack) / sample_size;
  stack.read([&](const void* samples, unsigned count) {
    if (count > left) {
      throw VrelError(VrelError()("Trying to write more samples than the stack is long!"));
    }
    if (count > 0) {
      at_output(path_, [&] { target.write(stack.data_type, samples, nullptr, count); });
    }
    left -= count;
    progress(count * sample_size);
  });
  if (left != 0) throw VrelError(VrelError()("Not enough samples written!"));
  if (target.get_state() != 0) at_output(path_, [&] { target.commit(stack.data_type); });
}

void ImportTarget::finish() {
  at_output(path_, [&] {
    if (new_file_) {
      file_->detach();
    } else {
      file_->close();
    }
  });
  if (new_file_) new_file_->finish();
}

void ImportTarget::give_up() noexcept {
  if (new_file_ || images_.empty()) return;
  try {
    file_.reset();
    file_ = VBFFile();
    open_existing();
    for (const Json::Value& image : images_) file_->meta_data().Image.append(image);
    file_->close();
  } catch (...) {
    // The stacks are in the file nevertheless.
  }
}

}  // namespace Vrel::tool
