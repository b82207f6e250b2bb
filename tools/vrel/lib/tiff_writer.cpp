#include "lib/tiff_writer.h"

#include <tiffio.h>
#include <unistd.h>
#include <vrelio/foundation/data_type.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "lib/complex_type.h"
#include "lib/error_report.h"

namespace Vrel::tool {

// What libtiff writes to, and what it complained of.
struct TiffWriter::Target {
  int descriptor;
  int system_error = 0;
  std::string message;
};

namespace {

tmsize_t remember_error(int& system_error) {
  system_error = errno;
  return -1;
}

// Functions for libtiff. A template, since the type of the target is private.
template <class Target>
struct Calls {
  static Target& target(thandle_t handle) { return *static_cast<Target*>(handle); }

  static tmsize_t read(thandle_t handle, void* data, tmsize_t size) {
    const ssize_t count = ::read(target(handle).descriptor, data, static_cast<std::size_t>(size));
    return count < 0 ? remember_error(target(handle).system_error) : count;
  }

  static tmsize_t write(thandle_t handle, void* data, tmsize_t size) {
    const bool success = write_all(target(handle).descriptor, data, static_cast<std::size_t>(size));
    return success ? size : remember_error(target(handle).system_error);
  }

  static toff_t seek(thandle_t handle, toff_t offset, int whence) {
    return static_cast<toff_t>(
        ::lseek(target(handle).descriptor, static_cast<off_t>(offset), whence));
  }

  static toff_t size(thandle_t handle) {
    const off_t here = ::lseek(target(handle).descriptor, 0, SEEK_CUR);
    const off_t end = ::lseek(target(handle).descriptor, 0, SEEK_END);
    ::lseek(target(handle).descriptor, here, SEEK_SET);
    return static_cast<toff_t>(end);
  }

  static int close(thandle_t) { return 0; }

  static int keep_message(TIFF*, void* user, const char* module, const char* format,
                          va_list arguments) {
    char text[512];
    std::vsnprintf(text, sizeof text, format, arguments);
    std::string& message = static_cast<Target*>(user)->message;
    if (message.empty()) message = (module == nullptr ? "" : std::string(module) + ": ") + text;
    return 1;
  }

  static int drop_message(TIFF*, void*, const char*, const char*, va_list) { return 1; }
};

bool is_complex(int data_type) { return (data_type & complex_flag) != 0; }

bool is_floating(int data_type) { return (data_type & (0x40 | 0x80)) != 0; }

bool is_signed(int data_type) { return (data_type & (0x2 | 0x8 | 0x20)) != 0; }

std::uint16_t sample_format(int data_type) {
  if (is_floating(data_type)) {
    return is_complex(data_type) ? SAMPLEFORMAT_COMPLEXIEEEFP : SAMPLEFORMAT_IEEEFP;
  }
  return is_signed(data_type) ? SAMPLEFORMAT_INT : SAMPLEFORMAT_UINT;
}

// Large enough to compress well, small enough for a program that wants a few rows.
std::uint32_t rows_of_strip(std::size_t row_size, std::uint32_t height) {
  constexpr std::size_t strip_size = 256u << 10;
  const std::size_t rows = std::max<std::size_t>(strip_size / row_size, 1);
  return static_cast<std::uint32_t>(std::min<std::size_t>(rows, height));
}

std::size_t sample_size(int data_type) {
  return static_cast<std::size_t>(vrel_dt_get_size(data_type));
}

// With what a page has beside its samples: its directory and the places of its strips.
bool is_big(const TiffForm& form, std::size_t row_size, std::uint32_t strip_rows) {
  constexpr std::uint64_t directory_size = 256;
  const std::uint64_t strips = form.height / strip_rows + 1;
  const std::uint64_t page_size =
      form.height * std::uint64_t{row_size} + strips * 16 + directory_size;
  return form.description.size() + form.pages * page_size >= form.big_at;
}

}  // namespace

void TiffWriter::Close::operator()(tiff* file) const { TIFFCleanup(file); }

TiffWriter::TiffWriter(std::string path, bool replace, TiffForm form)
    : file_(std::move(path), replace),
      form_(std::move(form)),
      row_size_(form_.width * sample_size(form_.data_type)) {
  strip_rows_ = rows_of_strip(row_size_, form_.height);
  target_.reset(new Target{file_.descriptor(), 0, ""});
  strip_.resize(strip_rows_ * row_size_);
  open();
  begin_page();
}

TiffWriter::~TiffWriter() = default;

void TiffWriter::open() {
  using Functions = Calls<Target>;
  const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(TIFFOpenOptionsAlloc(),
                                                                             TIFFOpenOptionsFree);
  if (!options) throw std::bad_alloc();
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), Functions::keep_message, target_.get());
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), Functions::drop_message, nullptr);
  // "m": nothing is mapped into memory.
  const char* const mode = is_big(form_, row_size_, strip_rows_) ? "w8m" : "wm";
  tiff_.reset(TIFFClientOpenExt("TIFF", mode, target_.get(), Functions::read, Functions::write,
                                Functions::seek, Functions::close, Functions::size, nullptr,
                                nullptr, options.get()));
  check(tiff_ != nullptr);
}

// libtiff knows what went wrong, and the system may know better.
void TiffWriter::check(bool success) const {
  if (success) return;
  errno = target_->system_error;
  if (errno != 0) raise_output_error(file_.path(), "Could not write!");
  throw OutputError(VrelError()("Could not write TIFF: %s", target_->message.c_str()),
                    file_.path());
}

void TiffWriter::begin_page() {
  TIFF* const file = tiff_.get();
  const auto bits = static_cast<unsigned>(8 * sample_size(form_.data_type));
  TIFFSetField(file, TIFFTAG_IMAGEWIDTH, form_.width);
  TIFFSetField(file, TIFFTAG_IMAGELENGTH, form_.height);
  TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, bits);
  TIFFSetField(file, TIFFTAG_SAMPLESPERPIXEL, 1);
  TIFFSetField(file, TIFFTAG_SAMPLEFORMAT, sample_format(form_.data_type));
  TIFFSetField(file, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
  TIFFSetField(file, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, strip_rows_);
  TIFFSetField(file, TIFFTAG_COMPRESSION,
               form_.compression == 0 ? COMPRESSION_NONE : COMPRESSION_ADOBE_DEFLATE);
  if (form_.compression != 0) {
    TIFFSetField(file, TIFFTAG_ZIPQUALITY, form_.compression);
    // Differences of neighbours compress better, and every reader undoes them.
    if (!is_floating(form_.data_type)) {
      TIFFSetField(file, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    }
  }
  if (page_ == 0 && !form_.description.empty()) {
    check(TIFFSetField(file, TIFFTAG_IMAGEDESCRIPTION, form_.description.c_str()) == 1);
  }
}

void TiffWriter::write(const void* data, std::size_t size) {
  const char* rest = static_cast<const char*>(data);
  while (size > 0) {
    const std::uint32_t rows = std::min(strip_rows_, form_.height - row_);
    const std::size_t piece = std::min(size, rows * row_size_ - filled_);
    std::memcpy(strip_.data() + filled_, rest, piece);
    filled_ += piece;
    rest += piece;
    size -= piece;
    if (filled_ == rows * row_size_) write_strip();
  }
}

void TiffWriter::write_strip() {
  const std::uint32_t strip = row_ / strip_rows_;
  const auto size = static_cast<tmsize_t>(filled_);
  check(TIFFWriteEncodedStrip(tiff_.get(), strip, strip_.data(), size) == size);
  row_ += static_cast<std::uint32_t>(filled_ / row_size_);
  filled_ = 0;
  if (row_ == form_.height) end_page();
}

void TiffWriter::end_page() {
  check(TIFFWriteDirectory(tiff_.get()) == 1);
  row_ = 0;
  if (++page_ < form_.pages) begin_page();
}

void TiffWriter::finish() {
  tiff_.reset();
  file_.finish();
}

}  // namespace Vrel::tool
