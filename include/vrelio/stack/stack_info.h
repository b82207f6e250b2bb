// The description of a stack: what it is, without its samples.
#pragma once

#include <vrelio/export.h>
#include <vrelio/foundation/integers.h>
#include <vrelio/ome/image.h>
#include <vrelio/si/value.h>
#include <vrelio/stack/position.h>

#include <boost/shared_ptr.hpp>
#include <string>
#include <utility>
#include <vector>

class VStackRegion;

/// A stack of N dimensions as it is described: sizes, element type, extent, labels and units of its axes,
/// its place and its OME metadata.
///
/// Axes are counted from 0, the fastest first, and lists have one entry per axis. An axis of length
/// l and offset o with n equidistant pixels has pixel i at o - l/2 + (i + 0.5) l/n: the offset is its
/// centre. Name, description, date, sizes and physical steps are also kept in an OME image, in so far as that
/// has a place for them; docs/stacks.md tells which.
///
/// All setters raise "Cannot set values. Object locked!" (-1) once the description stands in a file,
/// but for `set_stack_position`; all functions with an axis raise "Invalid axis specified!" (-15) for
/// one that the stack does not have. A setter that fails leaves what it had stored before the failing
/// step. A description is used by one thread at a time, also through constant functions.
///
/// The order of the virtual functions is part of the binary interface.
class VRELIO_EXPORT VStackInfoInterface {
 public:
  /// Slot 0. Become a stack of these sizes.
  /// \param sizes  elements per axis; none are one element.
  /// \param type  data type id, or 0 for none yet.
  /// \throws VrelError "The product exceeds the maximum size." (-1), and nothing has changed.
  /// \throws std::invalid_argument "Unsupported number of sizes" for more than 5 of a stack with
  ///   elements, "Unsupported physical dimension" if the OME image has no dimension order (any more),
  ///   "Unsupported data type" for a type without an OME pixel type; it is stored nevertheless.
  /// \throws Json::BadCast "bad cast" for a size above 2^31 - 1; it is stored nevertheless.
  virtual void create(const std::vector<unsigned int>& sizes, int type) = 0;
  /// Slot 1. Become as another stack but for units; see `set_info`.
  /// \param info  the other stack.
  /// \param type  data type id, or 0 for that of `info`.
  virtual void create(const VStackInfoInterface* info, int type) = 0;
  /// Slot 2. Become as a region of another stack but for units, with lengths, offsets, labels and position
  /// of that part.
  /// \param info  the other stack.
  /// \param region  part of it; what lies outside counts as well.
  /// \throws VrelError as `VStackRegion::validate`, and "Invalid pixel position!" (-15) for an axis
  ///   with positions of its own that is held outside of them.
  virtual void create(const VStackInfoInterface* info, const VStackRegion& region) = 0;
  /// Slot 3. Take over lengths, offsets, labels, description, name, labels and positions of columns and
  /// the position from another stack, as far as both have the axes. What the OME image has no place for is
  /// stored without one.
  /// \throws VrelError "Wrong number of labels!" or "Wrong number of positions!" (-15) for pixels of an axis
  ///   of another size; "Invalid global stack position!" (-1) for another number of axes. What comes before
  ///   in the list has been taken over then.
  virtual void set_info(const VStackInfoInterface* info) = 0;
  /// Slot 4. Set the name.
  virtual void set_name(const std::string& name) = 0;
  /// Slot 5. Set the acquisition date to now, in local time with its offset from UTC.
  virtual void set_acquisition_date() = 0;
  /// Slot 6. Set the description.
  virtual void set_description(const std::string& description) = 0;
  /// Slot 7. Set the physical extent of an axis.
  ///
  /// Intended: a length above 0.01 counts as micrometres in the OME image, any other as metres, 0 and 1
  /// as not set; StackInfoTest.TheMagnitudeOfALengthTellsItsUnit.
  /// \throws std::invalid_argument "Unsupported physical dimension" for an axis of letter C and one
  ///   above 4; the length is stored nevertheless.
  /// \throws Json::BadCast "bad cast" for a length that is not positive; it is stored nevertheless.
  virtual void set_len(unsigned int axis, double length) = 0;
  /// Slot 8. Set the lengths of the first axes; see the other form.
  virtual void set_len(const std::vector<double>& lengths) = 0;
  /// Slot 9. Set the physical position of an axis, that of its centre, also in every plane of the OME
  /// image that there is.
  /// \throws std::invalid_argument "Unsupported physical dimension" for an axis of letter C and one
  ///   above 4; the offset is stored nevertheless.
  /// \throws Json::BadCast "bad cast" for planes whose index on the axis, or an image whose step or size, is
  ///   not known; the offset is stored nevertheless.
  virtual void set_off(unsigned int axis, double offset) = 0;
  /// Slot 10. Set the offsets of the first axes; see the other form.
  virtual void set_off(const std::vector<double>& offsets) = 0;
  /// Slot 11. Set the labels of the first axes.
  virtual void set_labels(const std::vector<std::string>& labels) = 0;
  /// Slot 12. Set where the stack stands, also of a locked description.
  /// \throws VrelError "Invalid global stack position!" (-1) if it does not fit the axes.
  virtual void set_stack_position(const VStackPosition& position) = 0;
  /// Slot 13. Set a label for each pixel of an axis; none take the labels away.
  /// \throws VrelError "Wrong number of labels!" (-15).
  virtual void set_col_labels(unsigned int axis, const std::vector<std::string>& labels) = 0;
  /// Slot 14. Set a position for each pixel of an axis; none make it equidistant.
  /// \throws VrelError "Wrong number of positions!" (-15).
  virtual void set_col_positions(unsigned int axis, const std::vector<double>& positions) = 0;
  /// Slot 15. Set the label of an axis.
  virtual void set_label(unsigned int axis, const std::string& label) = 0;
  /// Slot 16. Set the unit of an axis.
  virtual void set_units(unsigned int axis, const si::value& units) = 0;
  /// Slot 17. Set the unit of the elements.
  virtual void set_data_units(const si::value& units) = 0;
  /// Slot 18. Bytes of all elements.
  /// \param type  data type id of the elements, or 0 for that of the stack.
  virtual u64 get_size(int type) const = 0;
  /// Slot 19. Product of the sizes.
  virtual unsigned int get_number_of_elements() const = 0;
  /// Slot 20. Number of axes.
  virtual unsigned int get_rank() const = 0;
  /// Slot 21. Elements per axis.
  virtual std::vector<unsigned int> get_sizes() const = 0;
  /// Slot 22. Data type id; 0 for none yet.
  virtual int get_dt() const = 0;
  /// Slot 23. Description; empty for none.
  virtual std::string get_description() const = 0;
  /// Slot 24. Name; empty for none.
  virtual std::string get_name() const = 0;
  /// Slot 25. Physical extents.
  virtual std::vector<double> get_lengths() const = 0;
  /// Slot 26. Physical positions of the axes' centres.
  virtual std::vector<double> get_offsets() const = 0;
  /// Slot 27. Labels of the axes.
  virtual std::vector<std::string> get_labels() const = 0;
  /// Slot 28. A label for each pixel of an axis, or none.
  virtual std::vector<std::string> get_col_labels(unsigned int axis) const = 0;
  /// Slot 29. The position of each pixel of an axis; none if its own positions no longer fit its
  /// size.
  virtual std::vector<double> get_col_positions(unsigned int axis) const = 0;
  /// Slot 30. The position of one pixel of an axis.
  /// \throws VrelError "Invalid pixel position!" (-15) if there is no such pixel.
  virtual double get_col_position(unsigned int axis, unsigned int pixel) const = 0;
  /// Slot 31. Whether the positions of an axis follow from length and offset.
  virtual bool is_equidistant(unsigned int axis) const = 0;
  /// Slot 32. Where the stack stands; it always fits the stack's axes.
  virtual VStackPosition get_stack_position() const = 0;
  /// Slot 33. Elements along an axis.
  virtual unsigned int get_dimension_size(unsigned int axis) const = 0;
  /// Slot 34. Physical extent of an axis.
  virtual double get_length(unsigned int axis) const = 0;
  /// Slot 35. Physical position of the centre of an axis.
  virtual double get_offset(unsigned int axis) const = 0;
  /// Slot 36. Label of an axis.
  virtual std::string get_label(unsigned int axis) const = 0;
  /// Slot 37. Unit of an axis.
  ///
  /// Intended: an axis without one whose label ends in X, Y or Z has micrometres if its length is above
  /// 0.01, else metres; StackInfoTest.ALabelAndALengthTellAMissingUnit.
  virtual si::value get_units(unsigned int axis) const = 0;
  /// Slot 38. Unit of the elements.
  virtual si::value get_data_units() const = 0;
  /// Slot 39. Metadata as the file has it; empty for a stack in memory.
  virtual std::string get_meta_data_string() const = 0;
  /// Slot 40. The OME image, for reading and writing. It belongs to the description.
  virtual Ome::Image<Json::SignalingReference>& meta_data() = 0;
  /// Slot 41.
  virtual ~VStackInfoInterface();

 protected:
  /// \cond
  VStackInfoInterface() = default;
  VStackInfoInterface(const VStackInfoInterface&) = default;
  VStackInfoInterface& operator=(const VStackInfoInterface&) = default;
  /// \endcond
};

/// A handle of a description that all its copies share.
class VRELIO_EXPORT VStackInfo {
 public:
  /// A handle of nothing.
  VStackInfo() = default;
  /// A handle of `info`, which it owns together with the other holders.
  // NOLINTNEXTLINE(google-explicit-constructor): a shared description can be handed over as it is
  VStackInfo(boost::shared_ptr<VStackInfoInterface> info) : info_(std::move(info)) {}

  // NOLINTBEGIN(google-explicit-constructor): a handle stands for what it holds
  /// The description, or null.
  operator VStackInfoInterface*() { return info_.get(); }
  /// The description, or null.
  operator const VStackInfoInterface*() const { return info_.get(); }
  // NOLINTEND(google-explicit-constructor)
  /// The description; there has to be one.
  VStackInfoInterface* operator->() { return info_.get(); }
  /// The description; there has to be one.
  const VStackInfoInterface* operator->() const { return info_.get(); }

 private:
  boost::shared_ptr<VStackInfoInterface> info_;
};
