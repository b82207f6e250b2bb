// A new TIFF file of pages that all have the same form, written sample by sample.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "lib/new_file.h"
#include "lib/output.h"

struct tiff;

namespace Vrel::tool {

/// The file's size from which on it is a BigTIFF file, with room for tags and for what compression may
/// add.
constexpr std::uint64_t big_tiff_size = 0xF0000000;

/// What the pages have in common.
struct TiffForm {
  std::uint32_t width = 1;   ///< samples in a row
  std::uint32_t height = 1;  ///< rows in a page
  std::uint64_t pages = 1;   ///< pages in the file
  int data_type = 1;         ///< real up to 32 bits, double, or complex of single or double
  int compression = 0;       ///< deflate level 1 to 9; 0 for none
  std::string description;   ///< description of the first page
  std::uint64_t big_at = big_tiff_size;  ///< size from which on the file is a BigTIFF file
};

/// Takes the samples of all pages in their order and holds back no more than one strip of a page.
class TiffWriter : public Output {
 public:
  /// \param path  of the file.
  /// \param replace  whether a file of that name may be replaced.
  /// \param form  of the pages.
  /// \throws OutputError as `NewFile`, and "Could not write TIFF: %s" with what libtiff says.
  TiffWriter(std::string path, bool replace, TiffForm form);
  ~TiffWriter() override;

  using Output::write;
  /// \throws OutputError "Could not write!" with the system error; "Could not write TIFF: %s".
  void write(const void* data, std::size_t size) override;
  /// To be called once all pages were written.
  /// \throws as `write`, and as `NewFile::finish`.
  void finish() override;

 private:
  struct Target;
  struct Close {
    void operator()(tiff* file) const;
  };

  void open();
  void begin_page();
  void write_strip();
  void end_page();
  void check(bool success) const;

  NewFile file_;
  TiffForm form_;
  std::uint32_t strip_rows_;
  std::size_t row_size_;
  std::unique_ptr<Target> target_;
  std::unique_ptr<tiff, Close> tiff_;
  std::vector<char> strip_;
  std::size_t filled_ = 0;
  std::uint32_t row_ = 0;
  std::uint64_t page_ = 0;
};

}  // namespace Vrel::tool
