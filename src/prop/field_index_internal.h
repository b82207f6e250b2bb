// The fields of a struct by name, for structs that grow large.
#pragma once

#include <vrelio/prop/prop_struct.h>

#include <cstddef>
#include <string>
#include <unordered_map>

namespace Vrel::detail {

/// Finds and adds the fields of one struct, which meanwhile loses none. A struct by itself looks through all
/// of its fields each time; the names of many are remembered here.
class Field_index {
 public:
  /// \param fields  they have to stay where they are.
  /// \param count  how many names will be asked for.
  Field_index(VPropstruct& fields, std::size_t count)
      : fields_(fields), is_small_(count <= small_count) {}

  bool has(const std::string& name);
  /// What the struct's own `[]` gives for the same path.
  VProp& at(const std::string& path);

 private:
  static constexpr std::size_t small_count = 16;

  bool find(const std::string& name, std::size_t& place);

  VPropstruct& fields_;
  bool is_small_;
  std::unordered_map<std::string, std::size_t> places_;
  std::size_t known_ = 0;
};

}  // namespace Vrel::detail
