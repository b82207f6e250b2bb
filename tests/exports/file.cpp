// Files, and stretches of them that are compressed.
#include <vrelio/vrelio.h>

#include <numeric>
#include <string>
#include <vector>

#include "exports.h"
#include "scratch_file.h"

namespace {

bool use_VFile() {
  const ScratchFile scratch("exports_VFile.tmp");
  VFile file(scratch.name(), VFile::mode_create);
  file.write("samples", 7);
  file.seek(3);
  std::string end(4, ' ');
  file.read(end.data(), 4);
  file.close();
  return end == "ples" && !file.is_open();
}

// What files and compressed stretches have in common.
bool use_VFileAccess() {
  const ScratchFile scratch("exports_VFileAccess.tmp");
  VFile file(scratch.name(), VFile::mode_create);
  VFileAccess& stream = file;
  stream.write_str("8 planes", true);
  stream.seek(0);
  std::string text;
  stream.read_str(text, 0xFFFFFFFF);  // its length stands in front
  return text == "8 planes" && stream.tell() == 4 + text.size();
}

bool use_VZippedSegment() {
  const ScratchFile scratch("exports_VZippedSegment.tmp");
  VFile file(scratch.name(), VFile::mode_create);
  std::vector<unsigned char> samples(10000);
  std::iota(samples.begin(), samples.end(), static_cast<unsigned char>(0));

  VZippedSegment segment;
  const u64 begin = segment.init_w(file, 6, VZippedSegment::no_limit);
  segment.write(samples.data(), 10000);
  const u64 stored = segment.write_end();
  segment.end();

  unsigned char sample = 0;
  segment.init_r(file, 6, begin, stored, 10000);
  segment.seek(9000);
  segment.read(&sample, 1);
  segment.end();
  return stored < 1000 && sample == samples[9000];
}

}  // namespace

std::vector<Export> file_exports() {
  return {{"VFile", use_VFile},
          {"VFileAccess", use_VFileAccess},
          {"VZippedSegment", use_VZippedSegment}};
}
