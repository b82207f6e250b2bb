#include "lib/png_writer.h"

#include <png.h>

#include <cerrno>
#include <cstdio>
#include <new>

#include "lib/error_report.h"
#include "lib/output.h"

namespace Vrel::tool {

namespace {

// What libpng writes to, and what it complained of. Plain, since libpng leaves functions by a jump.
struct Target {
  int descriptor;
  int system_error;
  char message[256];
};

extern "C" {

static void fail(png_structp png, png_const_charp message) {
  Target& target = *static_cast<Target*>(png_get_error_ptr(png));
  std::snprintf(target.message, sizeof target.message, "%s", message);
  png_longjmp(png, 1);
}

static void ignore_warning(png_structp, png_const_charp) {}

static void write_bytes(png_structp png, png_bytep data, png_size_t size) {
  Target& target = *static_cast<Target*>(png_get_io_ptr(png));
  if (write_all(target.descriptor, data, size)) return;
  target.system_error = errno;
  png_error(png, "");
}

// Nothing is held back.
static void flush_bytes(png_structp) {}

}  // extern "C"

class PngWriter {
 public:
  explicit PngWriter(Target& target)
      : png_(png_create_write_struct(PNG_LIBPNG_VER_STRING, &target, fail, ignore_warning)) {
    if (png_ != nullptr) info_ = png_create_info_struct(png_);
    if (info_ == nullptr) {
      png_destroy_write_struct(&png_, &info_);
      throw std::bad_alloc();
    }
    png_set_write_fn(png_, &target, write_bytes, flush_bytes);
    png_set_user_limits(png_, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
  }
  ~PngWriter() { png_destroy_write_struct(&png_, &info_); }
  PngWriter(const PngWriter&) = delete;
  PngWriter& operator=(const PngWriter&) = delete;

  // Has no object that a jump could leave behind.
  bool write(std::uint32_t width, std::uint32_t height, const unsigned char* pixels) {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_set_IHDR(png_, info_, width, height, 8, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png_, info_);
    for (std::uint32_t row = 0; row < height; ++row) {
      png_write_row(png_, pixels + std::size_t{row} * width);
    }
    png_write_end(png_, info_);
    return true;
  }

 private:
  png_structp png_;
  png_infop info_ = nullptr;
};

}  // namespace

void write_png(const NewFile& file, std::uint32_t width, std::uint32_t height,
               const unsigned char* pixels) {
  Target target{file.descriptor(), 0, ""};
  if (PngWriter(target).write(width, height, pixels)) return;
  errno = target.system_error;
  if (errno != 0) raise_output_error(file.path(), "Could not write!");
  throw OutputError(VrelError()("Could not write PNG: %s", target.message), file.path());
}

}  // namespace Vrel::tool
