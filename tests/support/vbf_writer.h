// Writes whole VBF files with the library's own codec and segment, for tests and for the demo.
#pragma once

#include <vrelio/container/records.h>
#include <vrelio/file/file.h>

#include <string>
#include <vector>

namespace Vrel::testing {

// A stack to be written. Of the record count: name, description, the header's rank, sizes, lengths,
// offsets, data type and compression, labels, column positions and labels, units, metadata, the
// flush block size and tags.
struct StackToWrite {
  StackRecord record;
  // The samples as bytes; none for a stack that reads as zeros.
  std::string samples;
};

// A record of this type and these sizes, with lengths 1, offsets 0 and empty texts.
StackRecord make_stack_record(int data_type, const std::vector<std::uint32_t>& sizes);

// Write in the order of a measuring program: the file header, each stack and its link, the
// dictionary (at format version 2).
void write_vbf(VFile& file, const std::string& description, const std::vector<StackToWrite>& stacks,
               const Dictionary& dictionary, std::uint32_t format_version = 2);

}  // namespace Vrel::testing
