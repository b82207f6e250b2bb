// A VBF file as a client sees it that has nothing but plain values.
#pragma once

#include <vrelio/container/bf_file.h>
#include <vrelio/export.h>
#include <vrelio/file/file.h>
#include <vrelio/stack/remote_stack.h>

#include <boost/shared_ptr.hpp>
#include <string>

namespace Remote {

/// A file of stacks, which all its copies share. The first of them that is destroyed closes it for all.
///
/// What `VBFFileInterface` raises passes through.
///
/// ```cpp
/// Remote::File file("image.vbf", Remote::File::mode_create);
/// const boost::shared_ptr<Remote::Stack> stack(Remote::get_stack(Remote::type_uint16, {512, 512}));
/// // a client fills the block of this id
/// const std::string id = stack->share();
/// file.write(stack, true);
/// ```
class VRELIO_EXPORT File {
 public:
  /// How a file is opened.
  enum Mode : int {
    mode_read = VFile::mode_read,      ///< read; the file must exist
    mode_create = VFile::mode_create,  ///< read and write; made anew or emptied
    mode_modify = VFile::mode_modify   ///< read and write; the file must exist
  };

  /// Open a file.
  /// \param name  in the encoding of the process's locale.
  /// \param mode  how.
  File(const std::string& name, Mode mode);
  /// Shares the file.
  File(const File& other);
  /// Shares the file of `other`; the one held until now is closed by the last that lets go of it.
  File& operator=(const File& other);
  /// Closes the file, for all copies. A failure is reported and swallowed.
  ~File();

  /// The description of the file.
  std::string description();
  /// Set the description of the file, before its first stack is written.
  void set_description(const std::string& description);
  /// The number of stacks.
  unsigned int number_of_stacks() const;
  /// Read a stack into memory.
  /// \param index  of the stack.
  boost::shared_ptr<Stack> read(unsigned int index);
  /// Append a stack. Its elements are read from shared memory, where they move if they are not there yet;
  /// nothing else about the stack changes. Stacks that follow are compressed in the same way.
  /// \param stack  what to write; not null.
  /// \param compress  as a zlib stream of level 1, or raw.
  /// \throws as the constructor `VStackImp(const Remote::Stack&)` and `VBFFileInterface::write_stack`.
  void write(boost::shared_ptr<Stack> stack, bool compress);

 private:
  VBFFile file_;
};

}  // namespace Remote
