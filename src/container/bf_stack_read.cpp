// A stack on its way out of the file.
#include <vrelio/foundation/convert.h>
#include <vrelio/foundation/data_type.h>

#include <algorithm>
#include <cstring>

#include "container/bf_file_imp_internal.h"
#include "container/bf_stack_imp_internal.h"
#include "container/conversion_internal.h"
#include "foundation/data_type_list_internal.h"
#include "foundation/raise_internal.h"

namespace Vrel::detail {

namespace {

constexpr u64 no_position = ~u64{0};

void check_imaginary(const void* imaginary, int type, int stored_type) {
  if (imaginary == nullptr) return;
  if ((type & complex_flag) != 0) {
    raise(id_plain, "Imaginary buffer passed but buffer type is already complex!");
  }
  if ((stored_type & complex_flag) == 0) {
    raise(id_plain, "Imaginary buffer passed but stack is not complex!");
  }
}

// Samples of the stored type have no imaginary block, which `check_imaginary` refuses for it.
void check_conversion(int stored_type, int type, void* imaginary) {
  if (stored_type == type) return;
  if (vrel_dt_convert(stored_type, type, nullptr, nullptr, 0, nullptr, imaginary) != 0) {
    raise_no_conversion(stored_type, type);
  }
}

void fill_with_zeros(void* samples, std::size_t size) {
  if (samples != nullptr) std::memset(samples, 0, size);
}

}  // namespace

// Others may be reading or writing the file in turn. A callback may have closed it meanwhile.
class VBFStackImp::KeptFilePosition {
 public:
  explicit KeptFilePosition(const VBFStackImp& stack)
      : stack_(stack), position_(stack.file_->tell()) {}
  KeptFilePosition(const KeptFilePosition&) = delete;
  KeptFilePosition& operator=(const KeptFilePosition&) = delete;
  ~KeptFilePosition() {
    if (stack_.file_ != nullptr && position_ != no_position) stack_.file_->seek(position_);
  }

 private:
  const VBFStackImp& stack_;
  const u64 position_;
};

void VBFStackImp::read(int type, void* data, void* imaginary) {
  int position = 0;
  read(type, data, imaginary, all_samples, position);
}

void VBFStackImp::read(int type, void* data, void* imaginary, unsigned int count, int& position) {
  if (position == position_continue) position = read_position_;
  if (position == position_exhausted) {
    raise(id_plain,
          "Invalid position (-1) passed. Possible reason: Last read call exhausted data.");
  }
  check_file();
  if (state_ != state_complete) raise(id_plain, "Stack not committed to disk. Cannot read!");
  check_imaginary(imaginary, type, get_dt());
  const KeptFilePosition kept(*this);
  const auto first = static_cast<unsigned int>(position);
  const bool exhausts = limit_to_rest(first, count);
  const auto sample_size = static_cast<unsigned int>(vrel_dt_get_size(type));
  if (empty_) {
    fill_with_zeros(data, std::size_t{count} * sample_size);
    fill_with_zeros(imaginary, std::size_t{count} * sample_size);
    return;
  }
  read_samples({type, static_cast<unsigned char*>(data), static_cast<unsigned char*>(imaginary),
                sample_size},
               first, count);
  position = exhausts ? position_exhausted : static_cast<int>(first + count);
  if (exhausts) reader_.reset();
  read_position_ = position;
}

// Whether a read takes all samples that are left.
bool VBFStackImp::limit_to_rest(unsigned int first, unsigned int& count) const {
  const unsigned int all = get_number_of_elements();
  const bool is_behind = first > all || (first == all && all != 0);
  if (is_behind && count != 0) raise(id_plain, "Trying to read beyond segment boundary!");
  if (is_behind || count < all - first) return false;
  count = all - first;
  return true;
}

void VBFStackImp::read_samples(Target target, unsigned int first, unsigned int count) {
  if (count == 0) return;
  check_conversion(get_dt(), target.type, target.imaginary);
  for (const u64 end = u64{first} + count; first < end;) {
    if (!reader_) reader_ = std::make_unique<SampleReader>(*file_, record_);
    const unsigned int piece =
        static_cast<unsigned int>(std::min<u64>(end - first, get_piece_length()));
    file_->report_progress(piece * get_sample_size());
    check_file();
    read_piece(target, first, piece);
    first += piece;
    const std::size_t size = std::size_t{piece} * target.sample_size;
    target.data += size;
    if (target.imaginary != nullptr) target.imaginary += size;
  }
}

void VBFStackImp::read_piece(const Target& target, u64 first, unsigned int count) {
  const bool is_plain = target.type == get_dt();
  try {
    if (is_plain) {
      reader_->read(first, count, target.data);
      return;
    }
    const unsigned int block = get_block_length(target.sample_size);
    for (unsigned int done = 0; done < count;) {
      const unsigned int length = std::min(count - done, block);
      read_block(target, first, done, length);
      done += length;
    }
  } catch (...) {
    reader_.reset();
    throw;
  }
}

void VBFStackImp::read_block(const Target& target, u64 first, unsigned int done,
                             unsigned int count) {
  const std::size_t offset = std::size_t{done} * target.sample_size;
  conversion_buffer_.resize(std::size_t{count} * get_sample_size());
  reader_->read(first + done, count, conversion_buffer_.data());
  convert_samples({get_dt(), conversion_buffer_.data(), nullptr},
                  {target.type, target.data + offset,
                   target.imaginary == nullptr ? nullptr : target.imaginary + offset},
                  count);
}

}  // namespace Vrel::detail
