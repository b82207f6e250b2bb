#include "container/tiff_stack.h"

#include <tiffio.h>

#include <algorithm>

namespace bench {

namespace {

constexpr auto strips_of_plane = static_cast<tstrip_t>(height / block_rows);

}  // namespace

TiffStack::TiffStack(const std::string& path, Access access)
    : file_(TIFFOpen(path.c_str(), access == write_new ? "w8" : "r")), strip_(block_rows * width) {
  require(file_ != nullptr, "TIFF: no file");
  if (access == write_new) return;
  do directories_.push_back(TIFFCurrentDirOffset(file_));
  while (TIFFReadDirectory(file_) != 0);
  current_ = directories_.size() - 1;
}

TiffStack::~TiffStack() { TIFFClose(file_); }

void TiffStack::write_plane(const Sample* samples) {
  TIFFSetField(file_, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(width));
  TIFFSetField(file_, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(height));
  TIFFSetField(file_, TIFFTAG_BITSPERSAMPLE, 16);
  TIFFSetField(file_, TIFFTAG_SAMPLESPERPIXEL, 1);
  TIFFSetField(file_, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
  TIFFSetField(file_, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
  TIFFSetField(file_, TIFFTAG_ZIPQUALITY, 1);
  TIFFSetField(file_, TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(block_rows));
  for (tstrip_t i = 0; i < strips_of_plane; ++i) {
    // The call may change what it is given, though it does not.
    auto* const strip = const_cast<Sample*>(samples) + i * block_rows * width;
    require(TIFFWriteEncodedStrip(file_, i, strip, static_cast<tmsize_t>(block_size)) >= 0,
            "TIFF: not written");
  }
  TIFFWriteDirectory(file_);
}

void TiffStack::go_to(std::size_t plane) {
  if (plane == current_) return;
  require(TIFFSetSubDirectory(file_, directories_[plane]) != 0, "TIFF: no directory");
  current_ = plane;
}

void TiffStack::read_plane(std::size_t plane, Sample* samples) {
  go_to(plane);
  for (tstrip_t i = 0; i < strips_of_plane; ++i) {
    Sample* const strip = samples + i * block_rows * width;
    require(TIFFReadEncodedStrip(file_, i, strip, static_cast<tmsize_t>(block_size)) >= 0,
            "TIFF: not read");
  }
}

void TiffStack::read_row(std::size_t plane, std::size_t row, Sample* samples) {
  go_to(plane);
  const auto strip = static_cast<tstrip_t>(row / block_rows);
  require(TIFFReadEncodedStrip(file_, strip, strip_.data(), static_cast<tmsize_t>(block_size)) >= 0,
          "TIFF: not read");
  std::copy_n(strip_.data() + row % block_rows * width, width, samples);
}

}  // namespace bench
