// The fields of a struct by name, for structs that grow large.
#pragma once

#include <vrelio/prop/prop_struct.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>

#include "prop/xml_error_internal.h"

namespace Vrel::detail {

/// How many fields may be passed in looking for names that no index has, in one document. Documents that
/// a tree was written to pass none; without a bound, short ones could take hours.
class Field_search_budget {
 public:
  /// \throws Xml_error when it is used up.
  void spend(std::size_t fields) {
    if (fields > left_) throw Xml_error("Too many fields are added to structs that have many");
    left_ -= fields;
  }

 private:
  std::uint64_t left_ = std::uint64_t{1} << 29;
};

/// Finds and adds the fields of one struct, which meanwhile loses none. A struct by itself looks through all
/// of its fields each time; the names of many are remembered here.
class Field_index {
 public:
  /// \param fields  they have to stay where they are.
  /// \param count  how many names will be asked for; room is made for that many fields.
  /// \param budget  for the fields that are there, and for paths through several structs.
  Field_index(VPropstruct& fields, std::size_t count, Field_search_budget& budget);

  bool has(const std::string& name);
  /// What the struct's own `[]` gives for the same path.
  VProp& at(const std::string& path);

 private:
  static constexpr std::size_t small_count = 16;

  bool find(const std::string& name, std::size_t& place);

  VPropstruct& fields_;
  bool is_small_;
  Field_search_budget& budget_;
  std::unordered_map<std::string, std::size_t> places_;
  std::size_t known_ = 0;
};

}  // namespace Vrel::detail
