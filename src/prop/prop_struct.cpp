#include <vrelio/prop/prop_struct.h>

#include <algorithm>

namespace {

template <class Fields>
auto find_field(Fields& fields, const std::string& key) {
  return std::find_if(fields.begin(), fields.end(),
                      [&key](const auto& field) { return field.first == key; });
}

template <class Element, class Move>
void reserve(std::vector<Element>& elements, unsigned int n, Move move) {
  if (n < elements.capacity()) return;
  std::vector<Element> moved;
  moved.reserve(n);
  moved.resize(elements.size());
  for (std::size_t i = 0; i < moved.size(); ++i) move(moved[i], elements[i]);
  elements.swap(moved);
}

}  // namespace

VPropstruct::iterator VPropstruct::find(const std::string& key) { return find_field(*this, key); }

VPropstruct::const_iterator VPropstruct::find(const std::string& key) const {
  return find_field(*this, key);
}

bool VPropstruct::has_key(const std::string& key) const { return find(key) != end(); }

bool VPropstruct::erase(const std::string& key) {
  const iterator field = find(key);
  if (field == end()) return false;
  erase(field);
  return true;
}

void vrel_prop_reserve(std::vector<VProp>& values, unsigned int n) {
  reserve(values, n, [](VProp& to, VProp& from) { to.swap(from); });
}

void vrel_prop_reserve(std::vector<std::pair<std::string, VProp>>& fields, unsigned int n) {
  reserve(fields, n, [](auto& to, auto& from) {
    to.first.swap(from.first);
    to.second.swap(from.second);
  });
}
