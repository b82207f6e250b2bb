// The one implementation of VBF files: header, chain of stacks, dictionary, and who may do what when.
#pragma once

#include <vrelio/container/bf_file.h>
#include <vrelio/container/records.h>
#include <vrelio/json/value.h>

#include <boost/weak_ptr.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Vrel::detail {

class VBFStackImp;

class VBFFileImp final : public VBFFileInterface, public VFile {
 public:
  // Raises "Machines with big endian currently not supported!" (-1).
  VBFFileImp();
  ~VBFFileImp() override;
  VBFFileImp(const VBFFileImp&) = delete;
  VBFFileImp& operator=(const VBFFileImp&) = delete;

  void attach(void*& handle, VFile::mode access) override;
  void open(const VPropstring& name, VFile::mode access) override;
  void close() override;
  void* detach() override;
  void finish() override;
  void set_creator(const std::string& creator) override;
  void set_uuid(const QUuid& uuid) override;
  void set_chunk_size(unsigned int size) override { VFile::set_chunk_size(size); }
  void set_description(const std::string& text) override;
  void get_description(std::string& text) const override { text = content_.description; }
  unsigned int get_number_of_stacks() const override;
  bool is_attached() const override { return !is_owned_; }
  void set_progress_callback(progress_callback callback, void* argument) override;
  void seek_to_stack_end(unsigned int stack) override;
  boost::shared_ptr<VBFStackInterface> add_stack(bool empty) override;
  boost::shared_ptr<VBFStackInterface> get_stack(unsigned int index) override;
  void write_stack(const VStackInterface* stack, int option) override;
  boost::shared_ptr<VStackInterface> read_stack(unsigned int index, int option) override;
  void set_default_compression(int type, int level) override;
  VFile::mode get_mode() const override { return VFile::get_mode(); }
  bool is_open() const override { return VFile::is_open(); }
  Ome::Document<Json::SignalingReference>& meta_data() override { return *document_; }

  // What a stack asks of its file while it is written or read.
  //
  // The file header, if it has yet to be written.
  void write_header();
  // Raises "Invalid call to on_stack_finished()!" (-1) unless the stack is the last one.
  void check_is_last(const VBFStackImp* stack) const;
  // Link a stack of which everything else stands in the file. Raises as `check_is_last`.
  void on_stack_finished(const VBFStackImp* stack);
  // Raises "Cancelled by user!" (-11).
  void report_progress(unsigned int bytes) const;

 private:
  using stack_ptr = boost::shared_ptr<VBFStackImp>;

  // A stack of the chain: as it was read, or the object that was made for it. What was read becomes objects
  // only as handles, so that a file with many stacks takes little memory.
  struct ChainLink {
    std::unique_ptr<const StackRecord> record;
    stack_ptr stack;  // null where there is a record
  };

  // What a file that was just made has.
  struct Content {
    u64 link_position = 0;  // where the next stack's position goes; 0 for nowhere
    bool is_header_pending = false;
    bool is_writable = false;
    int compression_type = 0;
    int compression_level = 1;
    progress_callback progress = nullptr;
    void* progress_argument = nullptr;
    std::string description;
    std::uint32_t format_version = 2;
    Dictionary dictionary;
    u64 dictionary_end = 0;             // 0 without a dictionary
    u64 dictionary_field_position = 0;  // where the dictionary's position goes
  };

  void become_new();
  void prepare(VFile::mode access);
  void open_dbl(const VPropstring& name);
  void read_content();
  void take_record(FileRecord& record);
  void finish_content();
  void write_closing_dictionary();
  void cut_off_stacks() noexcept;
  void keep_handle(const stack_ptr& stack);
  const VBFStackImp* last_made() const;
  u64 get_stack_end(const ChainLink& link) const;
  stack_ptr copy_stack(unsigned int index);

  Content content_;
  bool is_owned_ = false;
  std::vector<ChainLink> chain_;
  std::vector<boost::weak_ptr<VBFStackImp>> handles_;  // copies that were handed out
  Json::Value root_;                                   // what the document is a view of
  std::optional<Ome::Document<Json::SignalingReference>> document_;
};

}  // namespace Vrel::detail
