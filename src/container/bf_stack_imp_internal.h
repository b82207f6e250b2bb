// The one implementation of the stacks of VBF files.
#pragma once

#include <vrelio/container/bf_stack.h>
#include <vrelio/container/records.h>
#include <vrelio/container/sample_reader.h>
#include <vrelio/file/zipped_segment.h>
#include <vrelio/stack/stack_info_imp.h>

#include <memory>
#include <string>
#include <vector>

#include "container/dbl_format_internal.h"
#include "container/flush_plan_internal.h"

namespace Vrel::detail {

class VBFFileImp;

class VBFStackImp final : public VBFStackInterface, public VStackInfoImp {
 public:
  enum state : int { state_created = -1, state_complete = 0, state_ready = 1, state_writing = 2 };

  // A stack under construction. `file` is not owned and cuts the stack off before it goes.
  VBFStackImp(VBFFileImp* file, bool empty);
  // A stack that stands in the file.
  // Raises "Invalid metadata found!\n%s" (-1).
  VBFStackImp(VBFFileImp* file, StackRecord&& record);
  // The one stack of a ".dbl" file. Sizes end at the first below 2.
  // Raises "The product exceeds the maximum size." (-1).
  VBFStackImp(VBFFileImp* file, const DblHeader& header);
  // A handle with a reading position of its own.
  VBFStackImp(const VBFStackImp& other);
  VBFStackImp& operator=(const VBFStackImp&) = delete;
  ~VBFStackImp() override;

  void create(const std::vector<unsigned int>& sizes, int type) override;
  void create(const VStackInfoInterface* info, int type) override;
  void create(const VStackInfoInterface* info, const VStackRegion& region) override;

  std::vector<std::string> get_tag_keys() const override;
  void set_tag(const std::string& key, int type, const void* value) override;
  void set_tag(const std::string& key, const std::string& text) override;
  void get_tag(const std::string& key, int type, void* value) override;
  std::string get_tag(const std::string& key) override;
  void write(int type, const void* data, const void* imaginary, unsigned int count) override;
  void commit(int type) override;
  void read(int type, void* data, void* imaginary) override;
  void read(int type, void* data, void* imaginary, unsigned int count, int& position) override;
  void set_compression(int type, int level) override;
  void get_compression(int& type, int& level) const override;
  void set_flush_block_size(unsigned int size) override;
  int get_state() const override { return state_; }

  // What the file asks of its stacks.
  //
  // Be without a file from now on.
  void cut_off() noexcept;
  u64 get_stack_position_in_file() const { return record_.stack_position; }
  u64 get_stack_end_in_file() const { return record_.stack_end; }
  // Units, which do not come along with a description. Both have the same rank.
  static void copy_units(const VStackInfoInterface& from, VStackInfoInterface& to);

 private:
  // The samples that a caller hands in.
  struct Source {
    int type;
    const unsigned char* data;
    const unsigned char* imaginary;
    unsigned int sample_size;
  };
  // Where samples go that a caller wants.
  struct Target {
    int type;
    unsigned char* data;
    unsigned char* imaginary;
    unsigned int sample_size;
  };
  // What a call of `write` will do, once nothing stands against it.
  struct WritePlan {
    int stored_type;
    unsigned int remaining;
    unsigned int count;
    bool completes;
  };
  class KeptFilePosition;

  template <class Create>
  void create_by(Create create, bool growing);
  void check_file() const;
  void check_can_be_written() const;

  // bf_stack_record.cpp: the description and its record.
  void take_description(StackRecord& record);
  void take_description(const DblHeader& header);
  StackHeader make_header() const;
  StackRecord make_record() const;

  // bf_stack_write.cpp
  WritePlan plan_write(int type, const void* imaginary, unsigned int count) const;
  WritePlan plan_first_write(int type, const void* imaginary, unsigned int count) const;
  bool is_completed_by(unsigned int count, unsigned int remaining) const;
  bool is_growing_completed_by(unsigned int count) const;
  void check_storable(const WritePlan& plan, int type, const void* imaginary) const;
  void begin_writing(const WritePlan& plan);
  void write_stack_header();
  void open_segment();
  void write_samples(Source source, unsigned int count);
  void write_piece(const Source& source, unsigned int count);
  template <class Work>
  void write_to_segment(Work work);
  void store(const Source& source, unsigned int first, unsigned int count);
  void store_block(const Source& source, unsigned int first, unsigned int count);
  void update_variable_size();
  void complete();
  void finish_samples();
  void write_footer();

  // bf_stack_read.cpp
  bool limit_to_rest(unsigned int first, unsigned int& count) const;
  void read_samples(Target target, unsigned int first, unsigned int count);
  void read_piece(const Target& target, u64 first, unsigned int count);
  void read_block(const Target& target, u64 first, unsigned int done, unsigned int count);

  unsigned int get_sample_size() const;
  unsigned int get_piece_length() const;
  unsigned int get_block_length(unsigned int other_sample_size) const;

  VBFFileImp* file_;
  // Where things stand in the file, compression, flush table and tags. The rest of it is in the
  // description.
  StackRecord record_;
  bool empty_ = false;
  int state_ = state_created;
  bool growing_ = false;
  unsigned int samples_per_step_ = 1;
  unsigned int remaining_ = 0;
  unsigned int written_ = 0;
  // Samples behind those that count, of a piece that failed after they had been stored.
  unsigned int stored_ahead_ = 0;
  // A zlib stream must not be ended twice, not even by a commit that is done again.
  bool samples_finished_ = false;
  int read_position_ = 0;
  u64 flush_block_size_ = automatic_block_size;
  std::vector<unsigned char> conversion_buffer_;
  VZippedSegment segment_;                // while writing
  std::unique_ptr<SampleReader> reader_;  // while reading onward
};

}  // namespace Vrel::detail
