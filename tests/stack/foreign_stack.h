// A stack of another class than the library's, as a program may have one: it holds one and passes all on.
#pragma once

#include <vrelio/stack/stack_imp.h>

#include <string>
#include <vector>

class ForeignStack : public VStackInterface {
 public:
  using Labels = std::vector<std::string>;

  explicit ForeignStack(const VStackImp& held) : held_(held) {}

  void create(const std::vector<unsigned int>& sizes, int type) override {
    held_.create(sizes, type);
  }
  void create(const VStackInfoInterface* info, int type) override { held_.create(info, type); }
  void create(const VStackInfoInterface* info, const VStackRegion& region) override {
    held_.create(info, region);
  }
  void set_info(const VStackInfoInterface* info) override { held_.set_info(info); }
  void set_name(const std::string& name) override { held_.set_name(name); }
  void set_acquisition_date() override { held_.set_acquisition_date(); }
  void set_description(const std::string& text) override { held_.set_description(text); }
  void set_len(unsigned int axis, double length) override { held_.set_len(axis, length); }
  void set_len(const std::vector<double>& lengths) override { held_.set_len(lengths); }
  void set_off(unsigned int axis, double offset) override { held_.set_off(axis, offset); }
  void set_off(const std::vector<double>& offsets) override { held_.set_off(offsets); }
  void set_labels(const Labels& labels) override { held_.set_labels(labels); }
  void set_stack_position(const VStackPosition& place) override { held_.set_stack_position(place); }
  void set_col_labels(unsigned int axis, const Labels& labels) override {
    held_.set_col_labels(axis, labels);
  }
  void set_col_positions(unsigned int axis, const std::vector<double>& positions) override {
    held_.set_col_positions(axis, positions);
  }
  void set_label(unsigned int axis, const std::string& label) override {
    held_.set_label(axis, label);
  }
  void set_units(unsigned int axis, const si::value& units) override {
    held_.set_units(axis, units);
  }
  void set_data_units(const si::value& units) override { held_.set_data_units(units); }
  u64 get_size(int type) const override { return held_.get_size(type); }
  unsigned int get_number_of_elements() const override { return held_.get_number_of_elements(); }
  unsigned int get_rank() const override { return held_.get_rank(); }
  std::vector<unsigned int> get_sizes() const override { return held_.get_sizes(); }
  int get_dt() const override { return held_.get_dt(); }
  std::string get_description() const override { return held_.get_description(); }
  std::string get_name() const override { return held_.get_name(); }
  std::vector<double> get_lengths() const override { return held_.get_lengths(); }
  std::vector<double> get_offsets() const override { return held_.get_offsets(); }
  Labels get_labels() const override { return held_.get_labels(); }
  Labels get_col_labels(unsigned int axis) const override { return held_.get_col_labels(axis); }
  std::vector<double> get_col_positions(unsigned int axis) const override {
    return held_.get_col_positions(axis);
  }
  double get_col_position(unsigned int axis, unsigned int pixel) const override {
    return held_.get_col_position(axis, pixel);
  }
  bool is_equidistant(unsigned int axis) const override { return held_.is_equidistant(axis); }
  VStackPosition get_stack_position() const override { return held_.get_stack_position(); }
  unsigned int get_dimension_size(unsigned int axis) const override {
    return held_.get_dimension_size(axis);
  }
  double get_length(unsigned int axis) const override { return held_.get_length(axis); }
  double get_offset(unsigned int axis) const override { return held_.get_offset(axis); }
  std::string get_label(unsigned int axis) const override { return held_.get_label(axis); }
  si::value get_units(unsigned int axis) const override { return held_.get_units(axis); }
  si::value get_data_units() const override { return held_.get_data_units(); }
  std::string get_meta_data_string() const override { return held_.get_meta_data_string(); }
  Ome::Image<Json::SignalingReference>& meta_data() override { return held_.meta_data(); }

  void copy(const VStackInterface* source, const VStackRegion& region) override {
    held_.copy(source, region);
  }
  void copy(const VStackInterface* source, int type) override { held_.copy(source, type); }
  void destroy() override { held_.destroy(); }
  const unsigned char* get_data_ptr() const override { return held_.get_data_ptr(); }
  unsigned char* get_data_ptr() override { return held_.get_data_ptr(); }
  void resize(Ome::Type type, const std::vector<unsigned int>& sizes) override {
    held_.resize(type, sizes);
  }
  bool is_shared() const override { return held_.is_shared(); }
  const char* share() const override { return held_.share(); }

 private:
  VStackImp held_;
};
