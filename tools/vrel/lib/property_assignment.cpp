#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/error.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop_cast.h>

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

#include "lib/property_document.h"
#include "lib/property_kind.h"

namespace Vrel::tool {

namespace {

template <class Number>
bool is_all_of(std::string_view text) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  return result.ec == std::errc() && result.ptr == end;
}

bool is_word(std::string_view text) { return text == "Inf" || text == "-Inf" || text == "NaN"; }

template <class Real>
bool is_real(std::string_view text) {
  if (is_word(text)) return true;
  const bool has_other_letters =
      text.find_first_not_of("0123456789+-.eE") != std::string_view::npos;
  return !has_other_letters && is_all_of<Real>(text);
}

bool is_real_of(std::string_view text, int real) {
  switch (real) {
    case prop_id<unsigned char>:
      return is_all_of<unsigned char>(text);
    case prop_id<char>:
      return is_all_of<signed char>(text);
    case prop_id<unsigned short>:
      return is_all_of<unsigned short>(text);
    case prop_id<short>:
      return is_all_of<short>(text);
    case prop_id<unsigned int>:
      return is_all_of<unsigned int>(text);
    case prop_id<int>:
      return is_all_of<int>(text);
    case prop_id<unsigned long long>:
      return is_all_of<unsigned long long>(text);
    case prop_id<long long>:
      return is_all_of<long long>(text);
    case prop_id<float>:
      return is_real<float>(text);
    case prop_id<double>:
      return is_real<double>(text);
    case prop_id<bool>:
      return text == "0" || text == "1";
    default:
      return false;
  }
}

bool is_number_of(std::string_view text, int element) {
  if ((element & prop_complex_flag) == 0) return is_real_of(text, element);
  const std::size_t comma = text.find(',');
  if (text.empty() || text.front() != '(' || text.back() != ')') return false;
  if (comma == std::string_view::npos) return false;
  const int real = element ^ prop_complex_flag;
  return is_real_of(text.substr(1, comma - 1), real) &&
         is_real_of(text.substr(comma + 1, text.size() - comma - 2), real);
}

// Single blanks between the elements.
bool are_numbers_of(std::string_view text, int element, std::size_t count) {
  std::size_t found = 0;
  while (!text.empty()) {
    const std::size_t end = text.find(' ');
    if (!is_number_of(text.substr(0, end), element)) return false;
    ++found;
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
    if (text.empty()) return false;
  }
  return found == count;
}

std::string kind_in_words(const VProp& value) {
  std::string name = vrel_dt_get_name(value.get_id());
  const VProparrayBase* const array = value.get_arr(false);
  if (array == nullptr) return name;
  return std::to_string(array->count()) + " x " + name;
}

// What a user may type for a bool.
std::string bool_text(const std::string& text) {
  if (text == "true") return "1";
  return text == "false" ? "0" : text;
}

VProp read_as(const VProp& old, const std::string& typed) {
  const int id = old.get_id();
  if (id == prop_id<VPropstring>) return VPropstring(typed, VPropstring::encoding_utf8);
  std::string text = id == prop_id<bool> ? bool_text(typed) : typed;
  const bool fits = is_array(id) ? are_numbers_of(text, element_id(id), old.get_arr(true)->count())
                                 : is_number_of(text, id);
  if (!is_numeric(id) || !fits) {
    throw VrelError()("'%s' is no value of the kind %s!", typed.c_str(),
                      kind_in_words(old).c_str());
  }
  VProp read = vrel_string2val(text, id);
  if (is_array(id)) {
    read.get_arr(true)->set_size(old.get_arr(true)->get_size(true),
                                 VProparrayBase::set_mode_checked);
    read.get_arr(true)->userbits = old.get_arr(true)->userbits;
  }
  return read;
}

VProp guess(std::string text) {
  if (text == "true" || text == "false") return text == "true";
  for (const int id : {prop_id<int>, prop_id<long long>, prop_id<double>}) {
    if (is_real_of(text, id)) return vrel_string2val(text, id);
  }
  return VPropstring(text, VPropstring::encoding_utf8);
}

const VProp* find(const VProp& tree, const std::string& path) {
  try {
    return &tree.getp(path);
  } catch (const VrelError&) {
    return nullptr;
  }
}

}  // namespace

void assign(VProp& tree, const std::string& assignment) {
  const std::size_t sign = assignment.find('=');
  if (sign == std::string::npos) {
    throw VrelError()("'%s' is not of the form PATH=VALUE!", assignment.c_str());
  }
  const std::string path = assignment.substr(0, sign);
  const std::string text = assignment.substr(sign + 1);
  const VProp* const old = find(tree, path);
  VProp value = old == nullptr || old->empty() ? guess(text) : read_as(*old, text);
  VProp changed(tree);
  changed.getp(path, true).swap_value(value);
  tree.swap_value(changed);
}

}  // namespace Vrel::tool
