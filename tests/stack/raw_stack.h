// A stack of any of the 20 element types, also of those that a description refuses.
#pragma once

#include <vrelio/foundation/data_type.h>
#include <vrelio/stack/stack_imp.h>

#include <cstddef>
#include <vector>

class RawStack : public VStackImp {
 public:
  RawStack(int type, const std::vector<unsigned int>& sizes) : VStackImp(0), element_type_(type) {
    set_sizes(sizes);
    bytes_.resize(std::size_t{get_number_of_elements()} *
                  static_cast<std::size_t>(vrel_dt_get_size(type)));
  }

  int get_dt() const override { return element_type_; }
  const unsigned char* get_data_ptr() const override { return bytes_.data(); }
  unsigned char* get_data_ptr() override { return bytes_.data(); }

  std::vector<unsigned char>& bytes() { return bytes_; }

 private:
  int element_type_;
  std::vector<unsigned char> bytes_;
};

// The ids of the 20 element types.
inline std::vector<int> element_types() {
  std::vector<int> types = {0x1, 0x2, 0x4, 0x8, 0x10, 0x20, 0x40, 0x80, 0x1000, 0x2000};
  for (std::size_t i = 0; i < 10; ++i) types.push_back(types[i] | 0x40000000);
  return types;
}
