#include "lib/property_kind.h"

#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop_cast.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace Vrel::tool {

namespace {

template <class Real>
std::string shortest(const std::string& number) {
  Real value{};
  const char* const end = number.data() + number.size();
  const bool is_whole = std::from_chars(number.data(), end, value).ptr == end;
  if (!is_whole || !std::isfinite(value)) return number;
  char text[64];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string shortest_part(const std::string& number, int real) {
  if (real == prop_id<float>) return shortest<float>(number);
  if (real == prop_id<double>) return shortest<double>(number);
  return number;
}

std::string shortest_number(const std::string& number, int element) {
  const int real = element & ~prop_complex_flag;
  if (real == element) return shortest_part(number, real);
  const std::size_t comma = number.find(',');
  return '(' + shortest_part(number.substr(1, comma - 1), real) + ',' +
         shortest_part(number.substr(comma + 1, number.size() - comma - 2), real) + ')';
}

}  // namespace

bool is_array(int id) { return (id & prop_array_flag) != 0; }

int element_id(int id) { return id & ~prop_array_flag; }

bool is_numeric(int id) {
  const int element = element_id(id);
  return element != prop_id<_s_vrel_RGB> && vrel_dt_get_size(element) != 0;
}

std::vector<std::string> number_texts(const VProp& value) {
  std::vector<std::string> texts;
  const int element = element_id(value.get_id());
  const std::string all = vrel_val2string(value);
  for (std::size_t begin = 0; begin < all.size();) {
    const std::size_t end = std::min(all.find(' ', begin), all.size());
    texts.push_back(shortest_number(all.substr(begin, end - begin), element));
    begin = end + 1;
  }
  return texts;
}

std::vector<unsigned int> shape_of(const VProp& value) {
  const VProparrayBase* const array = value.get_arr(false);
  if (array == nullptr) return {};
  std::vector<unsigned int> shape = array->get_size(true);
  const bool is_row = shape.size() == 2 && (shape[0] == 1 || array->count() == 0);
  return is_row ? std::vector<unsigned int>() : shape;
}

}  // namespace Vrel::tool
