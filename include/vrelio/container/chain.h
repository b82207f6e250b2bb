// Reading everything of a VBF file but its samples.
#pragma once

#include <vrelio/container/records.h>
#include <vrelio/export.h>
#include <vrelio/file/file_access.h>

namespace Vrel {

/// Read the header, the dictionary and the chain of stacks of the VBF file at the current position
/// of `file`.
///
/// `file` must take a seek to all ones as one to its end. Afterwards it stands behind the file
/// header.
///
/// Every length, count and position is held against what the file has before memory is taken, and
/// no byte is read twice; so time and memory stay in proportion to the file. A dictionary that is
/// missing, misplaced or cut off counts as none.
///
/// \param file    not owned; what stands in front of its current position is not looked at.
/// \param record  is filled while reading. After an error it holds what came before: the stacks in
/// front of a damaged one.
///
/// \throws VrelError "No VBF file header found!" (-4); "Invalid stack position specified in
/// header!" (-4), also for a chain that
///         comes back to a stack; "Stack header not in vbf format!" (-4), also for a rank above 15;
///         "Stack footer not in vbf format!" (-4); "The product exceeds the maximum size." (-1);
///         "Cannot read stack with file format reader version %d. Need >= %d!" (-4);
///         "Failed reading %d bytes from file!" (-3) for whatever the file is too short for.
VRELIO_EXPORT void read_chain(VFileAccess& file, FileRecord& record);

/// As `read_chain`, but for the stacks: for who looks at a damaged file stack by stack.
///
/// \param file    as for `read_chain`.
/// \param record  gets no stacks. After an error it holds what came before.
/// \throws VrelError "No VBF file header found!" (-4); "Failed reading %d bytes from file!" (-3).
VRELIO_EXPORT void read_file_start(VFileAccess& file, FileRecord& record);

/// Read one stack, wherever its link may be, of which nothing is believed that the file is too short
/// for.
///
/// \param file   stands at the stack's header; afterwards behind its last section, after an error where
///               reading stopped.
/// \param stack  is filled while reading. After an error it holds what came before; its `data_position`
///               is 0 unless header, name and description were read.
/// \param open_length  stands for the data length of a header whose writer had no time to write it.
/// \throws as `read_chain`, of the messages about stacks.
VRELIO_EXPORT void read_stack_record(VFileAccess& file, StackRecord& stack, u64 open_length = 0);

/// Bytes that a file's dictionary or the tags of a stack take in the file, the terminator included.
VRELIO_EXPORT u64 encoded_size(const Dictionary& dictionary);

}  // namespace Vrel
