// The records of a file on their way out, whoever writes them. What is known only later is left open.
#pragma once

#include <vrelio/container/records.h>
#include <vrelio/file/file.h>

#include <string>

namespace Vrel::detail {

// Where the fields of a file's header stand that are written later.
struct FileFields {
  u64 link;        // of the first stack
  u64 dictionary;  // the dictionary's position; at format version 1 there is none
};

// Write the header of a file at the current position. Raises "String too long!" (-1).
FileFields write_file_start(VFile& file, std::uint32_t format_version,
                            const std::string& description);

// Write the header of a stack with its name and description at the current position, and give that.
u64 write_stack_start(VFile& file, const StackHeader& header, const std::string& name,
                      const std::string& description);

// Write footer and sections behind the data of a stack, and give the end of both.
// Raises "Tag keys cannot be empty!" (-1) before anything is written.
u64 write_stack_end(VFile& file, const StackRecord& stack, StackFooter footer);

// Write a field that was left open, and stay behind it.
void correct(VFile& file, u64 field, u64 value);

}  // namespace Vrel::detail
