#include <vrelio/ome/id.h>

#include <string>

namespace Ome {

Id::operator Json::Value() const {
  if (number == 0) return {};
  return std::string(prefix) + ':' + std::to_string(number);
}

}  // namespace Ome
