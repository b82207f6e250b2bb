#include <memory>

#include "prop/cloning_internal.h"
#include "prop/kind_list_internal.h"

using namespace Vrel::detail;

VProp::placeholder* VPropCloning::share(placeholder* content) {
  if (content == nullptr || !content->locked) {
    if (content != nullptr) ++content->use_count;
    return content;
  }
  VProp made;
  VPropCloning cloning;
  cloning.give(made, content);
  while (!cloning.open_.empty()) {
    const auto [to, locked] = cloning.open_.back();
    cloning.open_.pop_back();
    to->content_ = cloning.clone(*locked);
  }
  return std::exchange(made.content_, nullptr);
}

void VPropCloning::give(VProp& to, placeholder* content) {
  if (content != nullptr && content->locked) {
    open_.emplace_back(&to, content);
  } else {
    to.content_ = share(content);
  }
}

VProp::placeholder* VPropCloning::clone(const placeholder& locked) {
  switch (locked.get_id()) {
    case id_struct:
      return clone_container<VPropstruct>(locked);
    case id_cell_array:
      return clone_container<VProparray<VProp>>(locked);
    case id_struct_array:
      return clone_container<VProparray<VPropstruct>>(locked);
    default:
      return locked.clone();
  }
}

template <class T>
VProp::placeholder* VPropCloning::clone_container(const placeholder& locked) {
  auto made = std::make_unique<VProp::holder<T>>();
  copy(*static_cast<const T*>(locked.value_ptr()), *static_cast<T*>(made->value_ptr()));
  return made.release();
}

void VPropCloning::copy(const VPropstruct& from, VPropstruct& to) {
  to.reserve(from.size());  // the list points to the new fields
  for (const auto& [key, value] : from) copy(value, to.emplace_back(key, VProp()).second);
}

template <class T>
void VPropCloning::copy(const VProparray<T>& from, VProparray<T>& to) {
  to.VProparrayBase::operator=(from);
  to.resize(from.size());
  for (std::size_t i = 0; i < from.size(); ++i) copy(from[i], to[i]);
}
