// One stack of a VBF file, as programs write and read it. Where its bytes stand: docs/format.md.
#pragma once

#include <vrelio/export.h>
#include <vrelio/stack/stack_info.h>

#include <string>
#include <vector>

/// A stack of a VBF file: its description, its tags, and its samples by way of the file.
///
/// A stack that is written goes from created (-1) by `create` to ready (1), by the first `write` or
/// `commit` to writing (2), and to complete (0) once all of it stands in the file. A stack that was
/// read from a file is complete. From the first write on the description is locked, but for the
/// position.
///
/// Counts and positions are in samples, that is in elements of the stack's type, axis 0 fastest; a
/// complex sample has both its parts. Where the caller's type is another than the stored one, samples
/// are converted as by `vrel_dt_convert`, piece by piece.
///
/// A stack does not keep its file open. Once the file is closed, tags and description can still be read;
/// all that needs the file raises VrelError "Cannot access VBFStack, file has been closed!" (-1).
///
/// A file and all its stacks are used by one thread at a time. The order of the virtual functions is part
/// of the binary interface.
///
/// ```cpp
/// boost::shared_ptr<VBFStackInterface> stack = file->add_stack(false);
/// stack->create({512, 512, 0}, 4);  // uint16, growing along the last axis
/// for (const Plane& plane : planes) stack->write(4, plane.data(), nullptr, 512 * 512);
/// stack->commit(0);
/// ```
class VRELIO_EXPORT VBFStackInterface : public virtual VStackInfoInterface {
 public:
  /// Count that means all samples.
  static constexpr unsigned int all_samples = 0xFFFFFFFF;
  /// Position that means where the last read of this stack ended.
  static constexpr int position_continue = -2;
  /// Position behind a read that has reached the last sample.
  static constexpr int position_exhausted = -1;

  /// Slot 0. The keys of all tags, in ascending order of their bytes.
  virtual std::vector<std::string> get_tag_keys() const = 0;
  /// Slot 1. Set a tag to the XML text of a value; see `vrel_export_xml`.
  /// \param key  not empty.
  /// \param type  data type id of a number, a complex number or a bool; 0x4000 for a `VProp`.
  /// \param value  an object of that type; 2048 stands for an unsigned int.
  /// \throws VrelError "Tag type not supported!" (-1); "Tag keys cannot be empty!" (-1); and what
  ///   `vrel_export_xml` raises, as it does for RGB. Nothing has changed then.
  virtual void set_tag(const std::string& key, int type, const void* value) = 0;
  /// Slot 2. Set a tag to a text, which may be empty. Tags reach the file when the stack becomes
  /// complete; one that is set later is lost with the object.
  /// \param key  not empty.
  /// \param text  any bytes.
  /// \throws VrelError "Tag keys cannot be empty!" (-1).
  virtual void set_tag(const std::string& key, const std::string& text) = 0;
  /// Slot 3. Get a tag that was set as a value. A number becomes one of the wanted type as by
  /// `vrel_prop_cast`.
  /// \param key  of the tag.
  /// \param type  as for setting.
  /// \param[out] value  an object of that type; a `VProp` should be empty.
  /// \throws VrelError "Tag with key '%s' not found!" (-1); "Tag type not supported!" (-1); and what
  ///   `vrel_import_xml` and `vrel_prop_cast` raise.
  virtual void get_tag(const std::string& key, int type, void* value) = 0;
  /// Slot 4. The text of a tag.
  /// \throws VrelError "Tag with key '%s' not found!" (-1).
  virtual std::string get_tag(const std::string& key) = 0;

  /// Slot 5. Append samples. The last of a stack of known size makes it complete; one that grows is made
  /// complete by `commit` alone.
  ///
  /// After an error nothing of the piece that failed counts. Who goes on passes it again; what the file
  /// has of it already is not written twice. A zlib stream in which writing has failed cannot be gone on
  /// with.
  /// \param type  data type id of the caller's samples. A stack without a type takes it over, with the
  ///   complex flag where there is an imaginary part.
  /// \param data  the samples; not used where `count` is 0.
  /// \param imaginary  null, or imaginary parts that become complex samples with the real ones in `data`.
  /// \param count  number of samples; 0 as for `commit`. In the first call `all_samples` are those of
  ///   the stack, or none where it grows.
  /// \throws VrelError (-1) "Stack not ready to be commited. Meta-information missing!", "Stack is already
  ///   complete. Invalid call to write()!", "Trying to write to empty stack!", "Stack data type not set.
  ///   Cannot commit stack to file!", "Imaginary block given but buffer is already complex!", "Imaginary
  ///   block given but stack is not complex!", "Not enough samples written!", "Not on sample boundary!",
  ///   "Trying to write more samples than the stack is long!" (also where the steps of a growing stack have
  ///   no samples), "The product exceeds the maximum size.", "Invalid compression type specified!",
  ///   "Invalid on-the-fly conversion from '%s' to '%s'!", "Invalid call to on_stack_finished()!" for a copy
  ///   or a stack that is not the last; nothing has changed with any of these.
  /// \throws VrelError "Cancelled by user!" (-11); "Invalid meta information! Could not export to
  ///   xml.\n%s" (-1); "Zip error (id: %d)!" (-10); and what the file raises.
  // Intended: "commited"; the text is part of the interface.
  virtual void write(int type, const void* data, const void* imaginary, unsigned int count) = 0;
  /// Slot 6. Make the stack complete; as `write` of no samples.
  /// \param type  taken over by a stack without a type.
  virtual void commit(int type) = 0;
  /// Slot 7. Read all samples; see the other form.
  virtual void read(int type, void* data, void* imaginary) = 0;
  /// Slot 8. Read samples, or zeros where the stack was made empty.
  /// \param type  data type id of the caller's samples.
  /// \param[out] data  takes the samples.
  /// \param[out] imaginary  null, or takes the imaginary parts of complex samples, whose real parts go to
  ///   `data`.
  /// \param count  number of samples; `all_samples` or more than are left means those that are left.
  /// \param[in,out] position  of the first sample, or `position_continue`; positions from 2^31 on are
  ///   those of an unsigned int of the same bits. Becomes the position behind the samples that were read,
  ///   or `position_exhausted` if that is the end. A stack that was made empty leaves it.
  /// \throws VrelError (-1) "Invalid position (-1) passed. Possible reason: Last read call exhausted data.",
  ///   "Stack not committed to disk. Cannot read!", "Imaginary buffer passed but buffer type is already
  ///   complex!", "Imaginary buffer passed but stack is not complex!", "Trying to read beyond segment
  ///   boundary!", "Invalid on-the-fly conversion from '%s' to '%s'!"; "Cancelled by user!" (-11); and what
  ///   `VZippedSegment` raises.
  virtual void read(int type, void* data, void* imaginary, unsigned int count, int& position) = 0;

  /// Slot 9. Set how the samples are stored, before the first write.
  /// \param type  0 raw, 1 zlib; any other is refused by the first write.
  /// \param level  1 to 9 for zlib; 0 stores raw samples.
  /// \throws VrelError "Cannot change compression mode!" (-1).
  virtual void set_compression(int type, int level) = 0;
  /// Slot 10. How the samples are stored.
  virtual void get_compression(int& type, int& level) const = 0;
  /// Slot 11. Set how many bytes of samples lie between two points at which reading can start in a zlib
  /// stream; 0 for no such points. Left alone, it is chosen at the first write, so that 64 to 256 KiB lie
  /// between them where rows and planes allow. Stacks below 64 KiB and those that grow have none.
  /// \throws VrelError "Flush block size can only be set before starting to write!" (-1) unless the stack
  ///   is ready.
  virtual void set_flush_block_size(unsigned int size) = 0;
  /// Slot 12. -1 created, 1 ready, 2 writing, 0 complete.
  virtual int get_state() const = 0;

  ~VBFStackInterface() override;

 protected:
  /// \cond
  VBFStackInterface() = default;
  VBFStackInterface(const VBFStackInterface&) = default;
  VBFStackInterface& operator=(const VBFStackInterface&) = default;
  /// \endcond
};
