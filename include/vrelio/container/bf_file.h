// A VBF file, as programs write and read it. Where its bytes stand: docs/format.md.
#pragma once

#include <vrelio/container/bf_stack.h>
#include <vrelio/export.h>
#include <vrelio/file/file.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/ome/document.h>
#include <vrelio/stack/stack.h>

#include <boost/shared_ptr.hpp>
#include <string>

class QUuid;

/// What a `VBFFile` stands for.
///
/// States: without a file; reading; writing, which `mode_create` and `mode_modify` begin. At most the
/// last stack of a file is incomplete. What is complete stays readable whatever happens to the writer.
/// A closed file is like a new one, and can be opened again.
///
/// A file and all its stacks are used by one thread at a time. The order of the virtual functions is part
/// of the binary interface.
class VRELIO_EXPORT VBFFileInterface {
 public:
  /// \cond
  VBFFileInterface(const VBFFileInterface&) = delete;
  VBFFileInterface& operator=(const VBFFileInterface&) = delete;
  /// \endcond

  /// Called with the bytes of a piece of samples as stored (before compression), behind each piece that
  /// is written and before each that is read; 0 cancels.
  using progress_callback = int (*)(unsigned int bytes, void* argument);

  /// Slot 0. Use a handle that was opened elsewhere, from its position on; see `open`.
  /// \param handle  stays its opener's; see `VFile::attach`.
  /// \param mode  as for `open`.
  virtual void attach(void*& handle, VFile::mode mode) = 0;
  /// Slot 1. Open a file.
  ///
  /// `mode_read` reads all but the samples, `mode_create` starts a new file, and `mode_modify` reads a file
  /// to append stacks to it. After an error while reading the file stays open, with the stacks in front
  /// of the damage.
  ///
  /// With `mode_read` and a name that ends in ".dbl" the file is one of plain doubles or floats (see
  /// `vrel_dbl_read`), and has one raw stack.
  /// \param name  of the file.
  /// \param mode  how it is opened.
  /// \throws VrelError "Invalid opening mode!" (-15); what `VFile::open` and `Vrel::read_chain` raise;
  ///   "Invalid metadata found!\n%s" (-1); "Error reading .dbl file!" (-4).
  virtual void open(const VPropstring& name, VFile::mode mode) = 0;
  /// Slot 2. Finish writing, cut off all stacks and close the file; nothing without a file.
  /// \throws VrelError "File not opened with open(), cannot close." (-1) for an attached file, of which
  ///   nothing changes; as `finish`, and the file stays open; what the file raises.
  virtual void close() = 0;
  /// Slot 3. As `close`, but give the handle back. A stream that was read then stands behind the
  /// file's dictionary, one that was written at its end.
  /// \return the handle; that of a file which `open` opened becomes the caller's to close.
  virtual void* detach() = 0;
  /// Slot 4. Write the file header if it has not been, and make the last stack complete. Nothing without
  /// writing.
  /// \throws VrelError as `VBFStackInterface::commit`.
  virtual void finish() = 0;
  /// Slot 5. Set the name of the program in the OME metadata.
  virtual void set_creator(const std::string& creator) = 0;
  /// Slot 6. Set the UUID of the OME metadata.
  virtual void set_uuid(const QUuid& uuid) = 0;
  /// Slot 7. Set the bytes of samples that are moved in one piece; 4 MiB unless set.
  virtual void set_chunk_size(unsigned int size) = 0;
  /// Slot 8. Set the file's description, before anything is written.
  /// \throws VrelError "Read-only handle specified in write function!" (-9); "Header already written.
  ///   Cannot set file description!" (-1).
  virtual void set_description(const std::string& text) = 0;
  /// Slot 9. The file's description.
  virtual void get_description(std::string& text) const = 0;
  /// Slot 10. Number of stacks.
  virtual unsigned int get_number_of_stacks() const = 0;
  /// Slot 11. Whether there is no file that `open` has opened.
  virtual bool is_attached() const = 0;
  /// Slot 12. Set what is told of the progress of reading and writing.
  /// \param callback  null for nothing.
  /// \param argument  handed to it.
  virtual void set_progress_callback(progress_callback callback, void* argument) = 0;
  /// Slot 13. Move the file behind the last byte of a stack, for streams that hold more than this file.
  /// \throws VrelError "File must be open in read mode to allow seeking to end of file!" (-1); "Invalid
  ///   stack number!" (-1); "Invalid stack position specified in header!" (-4).
  virtual void seek_to_stack_end(unsigned int stack) = 0;
  /// Slot 14. Append a stack, after making the last one complete.
  /// \param empty  whether it is to have no samples in the file and to read as zeros.
  /// \return the stack under construction; its next step is `create`.
  /// \throws VrelError "File not open for writing!" (-1); as `finish`.
  virtual boost::shared_ptr<VBFStackInterface> add_stack(bool empty) = 0;
  /// Slot 15. A handle of a stack for reading, with a reading position of its own. It has the state that
  /// the stack has now.
  /// \throws VrelError "Invalid stack index %d!" (-4).
  virtual boost::shared_ptr<VBFStackInterface> get_stack(unsigned int index) = 0;
  /// Slot 16. Append a stack that lies in memory, with its description and units, and make it complete.
  /// \param stack  not null.
  /// \param option  data type id of the samples in the file; 0 for that of `stack`.
  /// \throws as `add_stack`, `VBFStackInterface::create` and `write`; "Internal error!" (-1) for a stack
  ///   whose buffer is smaller than its description says.
  virtual void write_stack(const VStackInterface* stack, int option) = 0;
  /// Slot 17. Read a whole stack into memory, with its description and units.
  /// \param index  of the stack.
  /// \param option  data type id of the samples in memory; 0 for that of the file.
  /// \throws as `get_stack`, `VStackImp::create` and `VBFStackInterface::read`.
  virtual boost::shared_ptr<VStackInterface> read_stack(unsigned int index, int option) = 0;
  /// Slot 18. Set how the samples of stacks that are added later are stored; raw unless set.
  /// \param type  as for `VBFStackInterface::set_compression`.
  /// \param level  as for `VBFStackInterface::set_compression`.
  virtual void set_default_compression(int type, int level) = 0;
  /// Slot 19. How the file was opened; `VFile::mode_none` without a file.
  virtual VFile::mode get_mode() const = 0;
  /// Slot 20. Whether there is a file.
  virtual bool is_open() const = 0;
  /// Slot 21. Closes the file; what that raises is reported by `VrelError::process` and goes no further.
  virtual ~VBFFileInterface();
  /// Slot 22. The OME metadata that closing writes. It starts new with every file: the text that a file
  /// has already is not read, and is replaced where the file is modified. Views of its parts are valid
  /// until the file is closed.
  virtual Ome::Document<Json::SignalingReference>& meta_data() = 0;

 protected:
  /// \cond
  VBFFileInterface() = default;
  /// \endcond
};

/// A handle of an open file that all its copies share. The last of them closes the file.
///
/// ```cpp
/// VBFFile file(L"image.vbf", VFile::mode_read);
/// boost::shared_ptr<VStackInterface> stack = file->read_stack(0, 0);
/// ```
class VRELIO_EXPORT VBFFile {
 public:
  /// A handle of an object without a file.
  VBFFile();
  /// A handle of an open file; see `VBFFileInterface::open`.
  VBFFile(const VPropstring& name, VFile::mode mode);
  /// Shares the file.
  VBFFile(const VBFFile& other);
  /// Shares the file of `other`.
  VBFFile& operator=(const VBFFile& other);
  ~VBFFile();

  /// Open a file in a new object, after letting go of the one that was held.
  void open(const VPropstring& name, VFile::mode mode);
  /// Let go of the object and hold none.
  void reset();
  /// The object that is held.
  boost::shared_ptr<VBFFileInterface> shared() { return file_; }

  // NOLINTBEGIN(google-explicit-constructor): a handle stands for what it holds
  /// The object, or null.
  operator VBFFileInterface*() { return file_.get(); }
  /// The object, or null.
  operator const VBFFileInterface*() const { return file_.get(); }
  // NOLINTEND(google-explicit-constructor)
  /// The object; there has to be one.
  VBFFileInterface* operator->() { return file_.get(); }
  /// The object; there has to be one.
  const VBFFileInterface* operator->() const { return file_.get(); }

 private:
  boost::shared_ptr<VBFFileInterface> file_;
};

/// The last error of the process as a text for people.
///
/// \param code  below 0: the identifier and the text of the last report are taken. Else an identifier
///   without a text of its own.
/// \return "Error in vbf module: ", what the identifier stands for and, for a code below 0, the text
///   on a line of its own, cut at 2047 bytes; empty where the identifier is 0. Valid until the next call
///   of any thread.
VRELIO_EXPORT const char* vrel_bf_get_errorstring(int code);
