#include "lib/tiff_reader.h"

#include <sys/stat.h>
#include <tiffio.h>
#include <unistd.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/error.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "lib/byte_order.h"
#include "lib/complex_type.h"
#include "lib/open_file.h"

namespace Vrel::tool {

namespace {

constexpr u64 piece_size = 4u << 20;
constexpr tmsize_t largest_allocation = 1 << 29;
[[noreturn]] void raise_unreadable(const std::string& reason) {
  throw VrelError(VrelError()("Cannot read TIFF: %s", reason.c_str())(-4));
}

// The first message of a failure tells most.
int keep_message(TIFF*, void* first_message, const char*, const char* format, va_list arguments) {
  auto& message = *static_cast<std::string*>(first_message);
  char text[512];
  std::vsnprintf(text, sizeof text, format, arguments);
  if (message.empty()) message = text;
  return 1;
}

int drop_message(TIFF*, void*, const char*, const char*, va_list) { return 1; }

struct FormatRow {
  unsigned sample_format;
  unsigned bits;
  int data_type;
};

constexpr FormatRow format_rows[] = {
    {SAMPLEFORMAT_UINT, 8, 0x1},
    {SAMPLEFORMAT_UINT, 16, 0x4},
    {SAMPLEFORMAT_UINT, 32, 0x10},
    {SAMPLEFORMAT_UINT, 64, 0x1000},
    {SAMPLEFORMAT_INT, 8, 0x2},
    {SAMPLEFORMAT_INT, 16, 0x8},
    {SAMPLEFORMAT_INT, 32, 0x20},
    {SAMPLEFORMAT_INT, 64, 0x2000},
    {SAMPLEFORMAT_IEEEFP, 32, 0x40},
    {SAMPLEFORMAT_IEEEFP, 64, 0x80},
    {SAMPLEFORMAT_COMPLEXINT, 16, 0x2 | complex_flag},
    {SAMPLEFORMAT_COMPLEXINT, 32, 0x8 | complex_flag},
    {SAMPLEFORMAT_COMPLEXINT, 64, 0x20 | complex_flag},
    {SAMPLEFORMAT_COMPLEXINT, 128, 0x2000 | complex_flag},
    {SAMPLEFORMAT_COMPLEXIEEEFP, 64, 0x40 | complex_flag},
    {SAMPLEFORMAT_COMPLEXIEEEFP, 128, 0x80 | complex_flag},
};

int data_type_of(unsigned sample_format, unsigned bits) {
  if (sample_format == SAMPLEFORMAT_VOID) sample_format = SAMPLEFORMAT_UINT;
  for (const FormatRow& row : format_rows) {
    if (row.sample_format == sample_format && row.bits == bits) return row.data_type;
  }
  return 0;
}

template <class Number>
Number field(TIFF* tiff, ttag_t tag, Number absent) {
  Number number{};
  return TIFFGetFieldDefaulted(tiff, tag, &number) == 1 ? number : absent;
}

unsigned sample_size(const TiffLayout& layout) {
  return static_cast<unsigned>(vrel_dt_get_size(layout.data_type));
}

// Samples of a pixel that stand together.
unsigned samples_together(const TiffLayout& layout) {
  return layout.is_separate ? 1 : layout.samples_per_pixel;
}

u64 row_size(const TiffLayout& layout) {
  return u64{layout.width} * samples_together(layout) * sample_size(layout);
}

unsigned number_of_planes(const TiffLayout& layout) {
  return layout.is_separate ? layout.samples_per_pixel : 1;
}

void hand_over(const SampleSink& sink, const std::vector<unsigned char>& samples, u64 size,
               const TiffLayout& layout) {
  sink(samples.data(), static_cast<unsigned>(size / sample_size(layout)));
}

}  // namespace

struct TiffReader::Handle {
  explicit Handle(const std::string& path);
  ~Handle() { TIFFCleanup(tiff); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  [[noreturn]] void raise() const {
    raise_unreadable(message.empty() ? "the file is damaged" : message);
  }
  u64 file_size() const;

  OpenFile file;
  std::string message;
  TIFF* tiff;
};

TiffReader::Handle::Handle(const std::string& path) : file(path) {
  const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(TIFFOpenOptionsAlloc(),
                                                                             TIFFOpenOptionsFree);
  if (!options) throw std::bad_alloc();
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), largest_allocation);
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), keep_message, &message);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), drop_message, nullptr);
  // Not mapped: a file that another program cuts off is an error of reading, and no signal.
  tiff = TIFFFdOpenExt(file.descriptor(), path.c_str(), "rm", options.get());
  if (tiff == nullptr) raise();
}

u64 TiffReader::Handle::file_size() const {
  struct stat status {};
  if (::fstat(file.descriptor(), &status) != 0 || status.st_size < 0) return 0;
  return static_cast<u64>(status.st_size);
}

TiffReader::TiffReader(const std::string& path) : handle_(std::make_unique<Handle>(path)) {
  take_first_directory();
  scan();
}

TiffReader::~TiffReader() = default;

void TiffReader::take_first_directory() {
  TIFF* const tiff = handle_->tiff;
  const char* text = nullptr;
  if (TIFFGetField(tiff, TIFFTAG_IMAGEDESCRIPTION, &text) == 1 && text != nullptr) {
    description_ = text;
  }
  x_resolution_ = field<float>(tiff, TIFFTAG_XRESOLUTION, 0.0F);
  y_resolution_ = field<float>(tiff, TIFFTAG_YRESOLUTION, 0.0F);
}

void TiffReader::scan() {
  TIFF* const tiff = handle_->tiff;
  while (true) {
    TiffDirectory directory;
    TiffLayout& layout = directory.layout;
    directory.offset = TIFFCurrentDirOffset(tiff);
    layout.width = field<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH, 0);
    layout.height = field<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH, 0);
    layout.samples_per_pixel = field<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    const auto config = field<std::uint16_t>(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    layout.is_separate = config == PLANARCONFIG_SEPARATE && layout.samples_per_pixel > 1;
    layout.data_type =
        data_type_of(field<std::uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT),
                     field<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE, 1));
    directories_.push_back(directory);
    if (TIFFLastDirectory(tiff) != 0) return;
    if (TIFFReadDirectory(tiff) != 1) handle_->raise();
  }
}

void TiffReader::select(const TiffDirectory& directory) {
  TIFF* const tiff = handle_->tiff;
  handle_->message.clear();
  if (TIFFSetSubDirectory(tiff, directory.offset) != 1) handle_->raise();
  handle_->message.clear();
  if (field<std::uint16_t>(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE) == COMPRESSION_JPEG) {
    TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
  }
}

void TiffReader::check_readable(const TiffLayout& layout) {
  TIFF* const tiff = handle_->tiff;
  if (layout.data_type == 0) raise_unreadable("there is no data type for its samples");
  const u64 row = TIFFIsTiled(tiff) != 0 ? TIFFTileRowSize64(tiff) : TIFFScanlineSize64(tiff);
  const auto width = TIFFIsTiled(tiff) != 0 ? field<std::uint32_t>(tiff, TIFFTAG_TILEWIDTH, 0)
                                            : std::uint32_t{layout.width};
  if (row == 0) handle_->raise();
  if (row != u64{width} * samples_together(layout) * sample_size(layout)) {
    raise_unreadable("its colours are stored in another resolution than its brightness");
  }
}

void TiffReader::read_plane(const TiffDirectory& directory, const SampleSink& sink) {
  const TiffLayout& layout = directory.layout;
  select(directory);
  check_readable(layout);
  if (TIFFIsTiled(handle_->tiff) != 0) return read_tiles(layout, sink);
  if (is_plain()) return read_plain(layout, sink);
  read_rows(layout, sink);
}

bool TiffReader::is_plain() {
  TIFF* const tiff = handle_->tiff;
  return TIFFIsTiled(tiff) == 0 &&
         field<std::uint16_t>(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE) == COMPRESSION_NONE &&
         field<std::uint16_t>(tiff, TIFFTAG_FILLORDER, FILLORDER_MSB2LSB) == FILLORDER_MSB2LSB;
}

// Strips that are not compressed need not be in memory as a whole.
void TiffReader::read_plain(const TiffLayout& layout, const SampleSink& sink) {
  TIFF* const tiff = handle_->tiff;
  const auto rows_per_strip = field<std::uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP, layout.height);
  for (unsigned sample = 0; sample < number_of_planes(layout); ++sample) {
    for (unsigned y = 0; y < layout.height;) {
      const unsigned rows = std::min(layout.height - y, std::max(rows_per_strip, 1u));
      const std::uint32_t strip = TIFFComputeStrip(tiff, y, static_cast<std::uint16_t>(sample));
      const u64 position = TIFFGetStrileOffset(tiff, strip);
      read_run(position, rows * row_size(layout), layout.data_type, sink);
      y += rows;
    }
  }
}

void TiffReader::read_run(u64 position, u64 size, int data_type, const SampleSink& sink) {
  const u64 file_size = handle_->file_size();
  if (position == 0 || position > file_size || size > file_size - position) {
    raise_unreadable("the file does not hold all samples");
  }
  const auto sample_size = static_cast<u64>(vrel_dt_get_size(data_type));
  std::vector<unsigned char> block(std::min(size, piece_size / sample_size * sample_size));
  while (size > 0) {
    const u64 piece = std::min<u64>(size, block.size());
    for (u64 done = 0; done < piece;) {
      const ssize_t count = ::pread(handle_->file.descriptor(), block.data() + done, piece - done,
                                    static_cast<off_t>(position + done));
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) throw VrelError(VrelError().do_oserr()("Could not read!"));
      if (count == 0) raise_unreadable("the file does not hold all samples");
      done += static_cast<u64>(count);
    }
    if (TIFFIsByteSwapped(handle_->tiff) != 0) {
      reverse_bytes(block.data(), piece, number_width(data_type));
    }
    sink(block.data(), static_cast<unsigned>(piece / sample_size));
    position += piece;
    size -= piece;
  }
}

void TiffReader::read_rows(const TiffLayout& layout, const SampleSink& sink) {
  const u64 row = row_size(layout);
  const u64 most_rows = std::max<u64>(piece_size / row, 1);
  if (row > static_cast<u64>(largest_allocation)) raise_unreadable("its rows are too long");
  std::vector<unsigned char> rows(row * std::min<u64>(most_rows, layout.height));
  for (unsigned sample = 0; sample < number_of_planes(layout); ++sample) {
    for (unsigned y = 0; y < layout.height;) {
      const auto count = static_cast<unsigned>(std::min<u64>(most_rows, layout.height - y));
      for (unsigned i = 0; i < count; ++i) {
        const int result = TIFFReadScanline(handle_->tiff, rows.data() + row * i, y + i,
                                            static_cast<std::uint16_t>(sample));
        if (result != 1) handle_->raise();
      }
      mend_complex(layout, rows);
      hand_over(sink, rows, row * count, layout);
      y += count;
    }
  }
}

void TiffReader::read_tiles(const TiffLayout& layout, const SampleSink& sink) {
  TIFF* const tiff = handle_->tiff;
  const auto tile_height = field<std::uint32_t>(tiff, TIFFTAG_TILELENGTH, 0);
  const u64 tile_size = TIFFTileSize64(tiff);
  constexpr auto most = static_cast<u64>(largest_allocation);
  const u64 band_height = std::min(tile_height, layout.height);
  if (tile_size == 0 || tile_size > most || band_height * row_size(layout) > 2 * most) {
    raise_unreadable("its tiles are too large");
  }
  if (field<std::uint32_t>(tiff, TIFFTAG_TILEDEPTH, 1) > 1)
    raise_unreadable("its tiles have depth");
  std::vector<unsigned char> tile(tile_size);
  std::vector<unsigned char> band(band_height * row_size(layout));
  for (unsigned sample = 0; sample < number_of_planes(layout); ++sample) {
    for (u64 y = 0; y < layout.height; y += tile_height) {
      read_tile_band(layout, static_cast<unsigned>(y), sample, tile, band);
      hand_over(sink, band, row_size(layout) * std::min<u64>(tile_height, layout.height - y),
                layout);
    }
  }
}

// One row of tiles becomes rows of samples.
void TiffReader::read_tile_band(const TiffLayout& layout, unsigned y, unsigned sample,
                                std::vector<unsigned char>& tile,
                                std::vector<unsigned char>& band) {
  TIFF* const tiff = handle_->tiff;
  const auto tile_width = field<std::uint32_t>(tiff, TIFFTAG_TILEWIDTH, 0);
  const auto tile_height = field<std::uint32_t>(tiff, TIFFTAG_TILELENGTH, 0);
  const u64 pixel_size = u64{samples_together(layout)} * sample_size(layout);
  const u64 tile_row = tile_width * pixel_size;
  const unsigned rows = std::min(tile_height, layout.height - y);
  for (u64 x = 0; x < layout.width; x += tile_width) {
    const tmsize_t size = TIFFReadTile(tiff, tile.data(), static_cast<std::uint32_t>(x), y, 0,
                                       static_cast<std::uint16_t>(sample));
    if (size < 0) handle_->raise();
    mend_complex(layout, tile);
    const u64 used = std::min<u64>(tile_width, layout.width - x) * pixel_size;
    for (unsigned row = 0; row < rows; ++row) {
      std::memcpy(band.data() + row * row_size(layout) + x * pixel_size,
                  tile.data() + row * tile_row, used);
    }
  }
}

// The TIFF library takes a complex sample of two bytes for one number when it puts the bytes of the other
// order right.
void TiffReader::mend_complex(const TiffLayout& layout, std::vector<unsigned char>& samples) {
  const bool is_mistaken = layout.data_type == (0x2 | complex_flag);
  if (!is_mistaken || TIFFIsByteSwapped(handle_->tiff) == 0) return;
  reverse_bytes(samples.data(), samples.size(), 2);
}

bool TiffReader::has_plain_planes(u64 planes) {
  const TiffLayout& layout = directories_.front().layout;
  if (planes < 2 || directories_.size() != 1 || layout.data_type == 0 || layout.is_separate) {
    return false;
  }
  select(directories_.front());
  const u64 file_size = handle_->file_size();
  const u64 position = TIFFGetStrileOffset(handle_->tiff, 0);
  const u64 plane = layout.count() * sample_size(layout);
  return is_plain() && plane != 0 && position < file_size &&
         (file_size - position) / plane >= planes;
}

void TiffReader::read_plain_planes(u64 planes, const SampleSink& sink) {
  const TiffLayout& layout = directories_.front().layout;
  select(directories_.front());
  read_run(TIFFGetStrileOffset(handle_->tiff, 0), planes * layout.count() * sample_size(layout),
           layout.data_type, sink);
}

}  // namespace Vrel::tool
