// The description of a stack, as stacks in memory and in files have it.
#pragma once

#include <vrelio/export.h>
#include <vrelio/json/value.h>
#include <vrelio/ome/types.h>
#include <vrelio/stack/remote_stack.h>
#include <vrelio/stack/stack_info.h>

#include <cstddef>
#include <string>
#include <vector>

/// What `VStackInfoInterface` describes, held in memory.
///
/// A copy is independent, its OME image too.
class VRELIO_EXPORT VStackInfoImp : public virtual VStackInfoInterface {
 public:
  /// A stack of no type and of size 0 along each axis, with axes XYZTC.
  /// \param rank  number of axes.
  explicit VStackInfoImp(unsigned int rank);
  /// A stack of these sizes.
  /// \param type  pixel type; "bit" is none of a stack.
  /// \param sizes  elements per axis.
  /// \param order  letters of the axes.
  /// \throws std::invalid_argument "Unsupported stack type", and as `create`.
  VStackInfoImp(Ome::Type type, const std::vector<unsigned int>& sizes, Ome::DimensionOrder order);
  /// A stack as `stack` describes it: of its type, sizes, labels, lengths and offsets, with a copy of its
  /// OME image. An image without an order of axes gets XYZTC.
  /// \throws Json::BadCast "bad cast" for an image that breaks the schema's rules, and as `create`.
  explicit VStackInfoImp(const Remote::Stack& stack);
  /// A copy that shares nothing; it is locked if `other` is.
  VStackInfoImp(const VStackInfoImp& other);
  VStackInfoImp& operator=(const VStackInfoImp&) = delete;
  ~VStackInfoImp() override;

  void create(const std::vector<unsigned int>& sizes, int type) override;
  void create(const VStackInfoInterface* info, int type) override;
  void create(const VStackInfoInterface* info, const VStackRegion& region) override;
  void set_info(const VStackInfoInterface* info) override;
  void set_name(const std::string& name) override;
  void set_acquisition_date() override;
  void set_description(const std::string& description) override;
  void set_len(unsigned int axis, double length) override;
  void set_len(const std::vector<double>& lengths) override;
  void set_off(unsigned int axis, double offset) override;
  void set_off(const std::vector<double>& offsets) override;
  void set_labels(const std::vector<std::string>& labels) override;
  void set_stack_position(const VStackPosition& position) override;
  void set_col_labels(unsigned int axis, const std::vector<std::string>& labels) override;
  void set_col_positions(unsigned int axis, const std::vector<double>& positions) override;
  void set_label(unsigned int axis, const std::string& label) override;
  void set_units(unsigned int axis, const si::value& units) override;
  void set_data_units(const si::value& units) override;
  u64 get_size(int type) const override;
  unsigned int get_number_of_elements() const override { return number_of_elements_; }
  unsigned int get_rank() const override;
  std::vector<unsigned int> get_sizes() const override { return sizes_; }
  int get_dt() const override { return type_; }
  std::string get_description() const override;
  std::string get_name() const override;
  std::vector<double> get_lengths() const override { return lengths_; }
  std::vector<double> get_offsets() const override { return offsets_; }
  std::vector<std::string> get_labels() const override { return labels_; }
  std::vector<std::string> get_col_labels(unsigned int axis) const override;
  std::vector<double> get_col_positions(unsigned int axis) const override;
  double get_col_position(unsigned int axis, unsigned int pixel) const override;
  bool is_equidistant(unsigned int axis) const override;
  VStackPosition get_stack_position() const override { return stack_position_; }
  unsigned int get_dimension_size(unsigned int axis) const override;
  double get_length(unsigned int axis) const override;
  double get_offset(unsigned int axis) const override;
  std::string get_label(unsigned int axis) const override;
  si::value get_units(unsigned int axis) const override;
  si::value get_data_units() const override { return data_units_; }
  std::string get_meta_data_string() const override { return meta_data_string_; }
  Ome::Image<Json::SignalingReference>& meta_data() override { return meta_data_; }

 protected:
  /// Set the sizes; errors as those of `create`. A position that does not fit them gives way to a
  /// new one.
  void set_sizes(const std::vector<unsigned int>& sizes);
  /// Set the data type id, 0 for none.
  /// \throws std::invalid_argument "Unsupported data type"; the id is stored nevertheless.
  void set_type(int type);
  /// Set the size of the last axis, also of a locked description; nothing without axes. The OME image
  /// as with `take_sizes`.
  /// \throws VrelError "The product exceeds the maximum size." (-1), and nothing has changed.
  void set_variable_size(unsigned int size);
  /// Set the data type id of a description that has none, also of a locked one. The OME image as with
  /// `take_type`.
  /// \throws VrelError "The type is already set to %d." (-1).
  void set_variable_type(int type);

  /// Set sizes that are a fact already, as those of a file. Where the OME image cannot hold them, it has
  /// none.
  /// \throws VrelError "The product exceeds the maximum size." (-1), and nothing has changed.
  void take_sizes(const std::vector<unsigned int>& sizes);
  /// Set a data type id that is a fact already. Where the OME image cannot hold it, it has no type.
  void take_type(int type);
  /// Set the extent of an axis that is a fact already, in the OME image only where that can hold it.
  void take_length(unsigned int axis, double length);
  /// Set the position of an axis that is a fact already, in the OME image only where that can hold it.
  void take_offset(unsigned int axis, double offset);
  /// Set the metadata as the file has it.
  void set_meta_data_string(const std::string& text) { meta_data_string_ = text; }
  /// The unit of an axis as it was set, without the guess of `get_units` where `info` allows to tell.
  static si::value get_stored_units(const VStackInfoInterface& info, unsigned int axis);
  /// Let no setter change anything from now on.
  void lock() noexcept { locked_ = true; }
  /// Whether setters raise.
  bool is_locked() const noexcept { return locked_; }

 private:
  using strings = std::vector<std::string>;

  class RegionTaker;

  void check_unlocked() const;
  void check_axis(unsigned int axis) const;
  void resize_axes(std::size_t rank);
  void keep_position_valid();
  void forget_col_positions(unsigned int axis);
  const std::vector<double>& current_col_positions(unsigned int axis) const;
  void store_length(unsigned int axis, double length);
  void store_offset(unsigned int axis, double offset);
  void store_sizes(const std::vector<unsigned int>& sizes);

  mutable std::vector<std::vector<double>> col_positions_;  // of equidistant axes: a cache
  std::vector<double> lengths_;
  std::vector<double> offsets_;
  std::vector<strings> col_labels_;
  std::vector<bool> equidistant_;
  strings labels_;
  std::vector<si::value> units_;
  si::value data_units_;
  VStackPosition stack_position_;
  std::string meta_data_string_;
  bool locked_ = false;
  int type_ = 0;
  std::vector<unsigned int> sizes_;
  unsigned int number_of_elements_ = 0;
  Json::Value image_tree_ = Json::Value(Json::Object());  // what the image is a view of
  Ome::Image<Json::SignalingReference> meta_data_{&image_tree_, Json::Value(), 0};
};
