#include "lib/property_kind.h"

#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop_cast.h>

namespace Vrel::tool {

bool is_array(int id) { return (id & prop_array_flag) != 0; }

int element_id(int id) { return id & ~prop_array_flag; }

bool is_numeric(int id) {
  const int element = element_id(id);
  return element != prop_id<_s_vrel_RGB> && vrel_dt_get_size(element) != 0;
}

std::vector<std::string> number_texts(const VProp& value) {
  std::vector<std::string> texts;
  const std::string all = vrel_val2string(value);
  for (std::size_t begin = 0; begin < all.size();) {
    const std::size_t end = std::min(all.find(' ', begin), all.size());
    texts.push_back(all.substr(begin, end - begin));
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
