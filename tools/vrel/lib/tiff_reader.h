// TIFF files as directories with one plane of samples each.
#pragma once

#include <vrelio/file/file_access.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "lib/import_stack.h"

namespace Vrel::tool {

/// What the samples of a directory are.
struct TiffLayout {
  unsigned width = 0;
  unsigned height = 0;
  unsigned samples_per_pixel = 1;
  bool is_separate = false;  ///< whether each sample of the pixels has a plane of its own
  int data_type = 0;         ///< as for `vrel_dt_get_size`; 0 for what has no data type

  bool operator==(const TiffLayout& other) const {
    return width == other.width && height == other.height &&
           samples_per_pixel == other.samples_per_pixel && is_separate == other.is_separate &&
           data_type == other.data_type;
  }
  bool operator!=(const TiffLayout& other) const { return !(*this == other); }

  /// Samples of the directory.
  u64 count() const { return u64{width} * height * samples_per_pixel; }
};

struct TiffDirectory {
  TiffLayout layout;
  u64 offset = 0;  ///< where it stands in the file
};

/// Reads in pieces of at most 4 MiB, or of one row of samples or of tiles where that is more. What
/// the file says of itself is held against its length. Compressed strips are held as they are
/// stored.
class TiffReader {
 public:
  /// \throws VrelError "Could not open file!" (-1) with the system error; "Cannot read TIFF: %s" (-4).
  explicit TiffReader(const std::string& path);
  ~TiffReader();
  TiffReader(const TiffReader&) = delete;
  TiffReader& operator=(const TiffReader&) = delete;

  /// All directories of the chain, at least one.
  const std::vector<TiffDirectory>& directories() const { return directories_; }

  /// ImageDescription of the first directory; empty for none.
  const std::string& description() const { return description_; }
  /// Pixels per unit of length of the first directory; 0 for none.
  double x_resolution() const { return x_resolution_; }
  double y_resolution() const { return y_resolution_; }

  /// Hand over the samples of a directory as they are stored: with their own planes one plane after
  /// the other, else all samples of a pixel together.
  /// \throws VrelError "Cannot read TIFF: %s" (-4), also for what has no data type.
  void read_plane(const TiffDirectory& directory, const SampleSink& sink);

  /// Whether `planes` planes like the first directory's one stand behind one another without
  /// directories of their own.
  bool has_plain_planes(u64 planes);
  /// Hand over planes that `has_plain_planes` has found.
  void read_plain_planes(u64 planes, const SampleSink& sink);

 private:
  struct Handle;

  void scan();
  void take_first_directory();
  void select(const TiffDirectory& directory);
  void check_readable(const TiffLayout& layout);
  bool is_plain();
  void read_plain(const TiffLayout& layout, const SampleSink& sink);
  void read_run(u64 position, u64 size, int data_type, const SampleSink& sink);
  void read_rows(const TiffLayout& layout, const SampleSink& sink);
  void read_tiles(const TiffLayout& layout, const SampleSink& sink);
  void read_tile_band(const TiffLayout& layout, unsigned y, unsigned sample,
                      std::vector<unsigned char>& tile, std::vector<unsigned char>& band);
  void mend_complex(const TiffLayout& layout, std::vector<unsigned char>& samples);

  std::unique_ptr<Handle> handle_;
  std::vector<TiffDirectory> directories_;
  std::string description_;
  double x_resolution_ = 0.0;
  double y_resolution_ = 0.0;
};

}  // namespace Vrel::tool
