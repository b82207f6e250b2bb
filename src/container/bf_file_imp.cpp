#include "container/bf_file_imp_internal.h"

#include <vrelio/container/chain.h>
#include <vrelio/json/write_xml.h>
#include <vrelio/stack/stack_imp.h>

#include <QString>
#include <QUuid>
#include <algorithm>
#include <boost/make_shared.hpp>
#include <exception>
#include <sstream>
#include <utility>

#include "container/bf_stack_imp_internal.h"
#include "container/chain_source_internal.h"
#include "container/dbl_internal.h"
#include "container/format_internal.h"
#include "container/record_buffer_internal.h"
#include "container/record_output_internal.h"
#include "container/report_internal.h"
#include "container/stack_metadata_internal.h"
#include "foundation/raise_internal.h"
#include "stack/readable_data_internal.h"

namespace Vrel::detail {

namespace {

constexpr u64 end_of_file = ~u64{0};

bool is_big_endian() {
  const unsigned short number = 1;
  unsigned char first = 0;
  std::copy_n(reinterpret_cast<const unsigned char*>(&number), 1, &first);
  return first == 0;
}

void check_mode(VFile::mode mode) {
  const bool is_mode =
      mode == VFile::mode_read || mode == VFile::mode_create || mode == VFile::mode_modify;
  if (!is_mode) raise(id_mode, "Invalid opening mode!");
}

void check_metadata(const StackRecord& stack) {
  import_metadata(stack.metadata, stack.header.format_version, stack.header.rank);
}

// Stacks of one series mostly have; what is true of one is true of the next.
bool have_same_metadata(const StackRecord& a, const StackRecord& b) {
  return a.header.format_version == b.header.format_version && a.header.rank == b.header.rank &&
         a.metadata == b.metadata;
}

bool names_dbl(const VPropstring& name) {
  const std::wstring ending = L".dbl";
  return name.size() >= ending.size() &&
         name.compare(name.size() - ending.size(), ending.size(), ending) == 0;
}

}  // namespace

VBFFileImp::VBFFileImp() {
  if (is_big_endian()) raise(id_plain, "Machines with big endian currently not supported!");
  document_.emplace(&root_);
}

VBFFileImp::~VBFFileImp() {
  report_failures([this] { finish_content(); });
  cut_off_stacks();
}

void VBFFileImp::become_new() {
  content_ = Content();
  is_owned_ = false;
  VFile::set_chunk_size(VFile().get_chunk_size());
  document_.reset();
  root_ = Json::Value();
  document_.emplace(&root_);
}

void VBFFileImp::attach(void*& handle, VFile::mode access) {
  check_mode(access);
  VFile::attach(handle, access);
  prepare(access);
}

void VBFFileImp::open(const VPropstring& name, VFile::mode access) {
  check_mode(access);
  if (access == mode_read && names_dbl(name)) return open_dbl(name);
  VFile::open(name, access);
  is_owned_ = true;
  prepare(access);
}

// A file with one raw stack, and nothing else that a VBF file has.
void VBFFileImp::open_dbl(const VPropstring& name) {
  check_can_take_file(mode_read);
  cut_off_stacks();
  const DblHeader header = read_dbl_header(name);
  const auto stack = boost::make_shared<VBFStackImp>(this, header);
  VFile::open(name, mode_read);
  is_owned_ = true;
  chain_.push_back({nullptr, stack});
}

void VBFFileImp::prepare(VFile::mode access) {
  cut_off_stacks();
  content_.is_writable = false;
  if (access == mode_create) {
    content_.link_position = 0;
    content_.is_header_pending = true;
  } else {
    content_.is_header_pending = false;
    read_content();
  }
  if (access == mode_modify) checked_seek(*this, end_of_file);
  content_.is_writable = access != mode_read;
}

// The stacks in front of a damage can be used; what is wrong with one of them comes before what is wrong
// behind them.
void VBFFileImp::read_content() {
  FileRecord record;
  std::exception_ptr failure;
  try {
    read_chain(*this, record);
  } catch (...) {
    failure = std::current_exception();
  }
  take_record(record);
  if (failure) std::rethrow_exception(failure);
}

void VBFFileImp::take_record(FileRecord& record) {
  content_.description = std::move(record.description);
  content_.format_version = record.header.format_version;
  content_.dictionary = std::move(record.dictionary);
  content_.dictionary_end = record.dictionary_end;
  content_.dictionary_field_position = record.dictionary_field_position;
  content_.link_position = record.file_position + first_stack_offset;
  for (StackRecord& stack : record.stacks) {
    content_.link_position = stack.stack_position + next_stack_offset;
    if (chain_.empty() || !have_same_metadata(*chain_.back().record, stack)) check_metadata(stack);
    ChainLink link;
    link.record = std::make_unique<const StackRecord>(std::move(stack));
    chain_.push_back(std::move(link));
  }
}

// What is not closed here is refused before anything is written.
void VBFFileImp::close() {
  if (!is_open()) return;
  if (is_owned_) finish_content();
  VFile::close();
  cut_off_stacks();
  become_new();
}

void* VBFFileImp::detach() {
  if (!is_open()) return nullptr;
  finish_content();
  cut_off_stacks();
  void* const handle = VFile::detach();
  become_new();
  return handle;
}

void VBFFileImp::finish_content() {
  if (content_.format_version < 2) {
    finish();
  } else if (content_.is_writable) {
    finish();
    write_closing_dictionary();
  } else if (is_open() && content_.dictionary_end != 0) {
    checked_seek(*this, content_.dictionary_end);
  }
}

void VBFFileImp::write_closing_dictionary() {
  std::ostringstream text;
  // Without memory a stream goes silent, and half a document would be taken for the whole.
  text.exceptions(std::ios::badbit);
  Json::write_xml(root_, text);
  const u64 end = checked_seek(*this, end_of_file);
  correct(*this, content_.dictionary_field_position, end);
  checked_seek(*this, end);
  content_.dictionary["ome_xml"] = text.str();
  RecordBuffer buffer;
  write_dictionary(buffer, content_.dictionary);
  buffer.flush_to(*this);
}

void VBFFileImp::cut_off_stacks() noexcept {
  for (const ChainLink& link : chain_) {
    if (link.stack) link.stack->cut_off();
  }
  for (const auto& handle : handles_) {
    if (const stack_ptr stack = handle.lock()) stack->cut_off();
  }
  chain_.clear();
  handles_.clear();
}

void VBFFileImp::finish() {
  if (!content_.is_writable) return;
  write_header();
  const VBFStackImp* const last = last_made();
  if (last != nullptr && last->get_state() != VBFStackImp::state_complete) {
    chain_.back().stack->commit(0);
  }
}

void VBFFileImp::write_header() {
  if (!content_.is_header_pending) return;
  const FileFields fields = write_file_start(*this, content_.format_version, content_.description);
  content_.link_position = fields.link;
  content_.dictionary_field_position = fields.dictionary;
  content_.is_header_pending = false;
}

void VBFFileImp::check_is_last(const VBFStackImp* stack) const {
  if (last_made() != stack) raise(id_plain, "Invalid call to on_stack_finished()!");
}

// Null where the last stack was read, or there is none.
const VBFStackImp* VBFFileImp::last_made() const {
  return chain_.empty() ? nullptr : chain_.back().stack.get();
}

void VBFFileImp::on_stack_finished(const VBFStackImp* stack) {
  check_is_last(stack);
  const u64 here = checked_tell(*this);
  if (content_.link_position != 0) {
    correct(*this, content_.link_position, stack->get_stack_position_in_file());
  }
  checked_seek(*this, here);
  content_.link_position = stack->get_stack_position_in_file() + next_stack_offset;
}

void VBFFileImp::report_progress(unsigned int bytes) const {
  if (content_.progress == nullptr) return;
  if (content_.progress(bytes, content_.progress_argument) == 0) {
    raise(id_cancelled, "Cancelled by user!");
  }
}

void VBFFileImp::set_creator(const std::string& creator) {
  document_->Creator = Json::Value(creator);
}

void VBFFileImp::set_uuid(const QUuid& uuid) {
  const QString text = uuid.toString(QUuid::WithoutBraces);
  document_->UUID = Json::Value("urn:uuid:" + text.toStdString());
}

void VBFFileImp::set_description(const std::string& text) {
  if (!content_.is_writable) raise(id_handle, "Read-only handle specified in write function!");
  if (!content_.is_header_pending) {
    raise(id_plain, "Header already written. Cannot set file description!");
  }
  length_field(text.size());
  content_.description = text;
}

unsigned int VBFFileImp::get_number_of_stacks() const {
  return static_cast<unsigned int>(chain_.size());
}

void VBFFileImp::set_progress_callback(progress_callback callback, void* argument) {
  content_.progress = callback;
  content_.progress_argument = argument;
}

void VBFFileImp::set_default_compression(int type, int level) {
  content_.compression_type = type;
  content_.compression_level = level;
}

void VBFFileImp::seek_to_stack_end(unsigned int stack) {
  if (!is_open() || content_.is_writable) {
    raise(id_plain, "File must be open in read mode to allow seeking to end of file!");
  }
  if (stack >= chain_.size()) raise(id_plain, "Invalid stack number!");
  checked_seek(*this, get_stack_end(chain_[stack]));
}

u64 VBFFileImp::get_stack_end(const ChainLink& link) const {
  return link.record ? link.record->stack_end : link.stack->get_stack_end_in_file();
}

boost::shared_ptr<VBFStackInterface> VBFFileImp::add_stack(bool empty) {
  if (!content_.is_writable) raise(id_plain, "File not open for writing!");
  finish();
  auto stack = boost::make_shared<VBFStackImp>(this, empty);
  stack->set_compression(content_.compression_type, content_.compression_level);
  chain_.push_back({nullptr, stack});
  return stack;
}

boost::shared_ptr<VBFStackInterface> VBFFileImp::get_stack(unsigned int index) {
  return copy_stack(index);
}

VBFFileImp::stack_ptr VBFFileImp::copy_stack(unsigned int index) {
  if (index >= chain_.size()) {
    raise(id_format, "Invalid stack index %d!", static_cast<int>(index));
  }
  const ChainLink& link = chain_[index];
  auto stack = link.record ? boost::make_shared<VBFStackImp>(this, StackRecord(*link.record))
                           : boost::make_shared<VBFStackImp>(*link.stack);
  keep_handle(stack);
  return stack;
}

// Those that are gone are forgotten whenever there is no room, so that handles that come and go take no
// memory.
void VBFFileImp::keep_handle(const stack_ptr& stack) {
  if (handles_.size() == handles_.capacity()) {
    const auto is_gone = [](const auto& handle) { return handle.expired(); };
    handles_.erase(std::remove_if(handles_.begin(), handles_.end(), is_gone), handles_.end());
    handles_.reserve(2 * handles_.size() + 1);
  }
  handles_.push_back(stack);
}

void VBFFileImp::write_stack(const VStackInterface* stack, int option) {
  const unsigned char* const data = readable_data(*stack);
  add_stack(false);
  const stack_ptr added = chain_.back().stack;
  try {
    added->create(stack, option);
    VBFStackImp::copy_units(*stack, *added);
  } catch (...) {
    chain_.pop_back();
    throw;
  }
  added->write(stack->get_dt(), data, nullptr, VBFStackInterface::all_samples);
}

boost::shared_ptr<VStackInterface> VBFFileImp::read_stack(unsigned int index, int option) {
  const stack_ptr stack = copy_stack(index);
  auto memory = boost::make_shared<VStackImp>(0U);
  memory->create(stack.get(), option);
  VBFStackImp::copy_units(*stack, *memory);
  stack->read(memory->get_dt(), memory->get_data_ptr(), nullptr);
  return memory;
}

}  // namespace Vrel::detail
