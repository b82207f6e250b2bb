#include <vrelio/prop/prop.h>

#include <memory>
#include <utility>

#include "foundation/raise_internal.h"
#include "prop/cloning_internal.h"
#include "prop/demolition_internal.h"
#include "prop/holder_internal.h"
#include "prop/kind_list_internal.h"
#include "prop/type_mismatch_internal.h"

using namespace Vrel::detail;

namespace {

VProp::placeholder* make_holder(int id, const void* value) {
  return with_held_kind(id, [value](auto of) -> VProp::placeholder* {
    using T = typename decltype(of)::type;
    return new VProp::holder<T>(*static_cast<const T*>(value));
  });
}

VProp::placeholder* make_default_holder(int id) {
  return with_held_kind(id, [](auto of) -> VProp::placeholder* {
    return new VProp::holder<typename decltype(of)::type>();
  });
}

}  // namespace

namespace Vrel::detail {

void raise_type_mismatch(int found, int expected) {
  const auto brackets = [](int id) { return (id & array_flag) != 0 ? "[]" : ""; };
  raise(id_plain, "Type mismatch: found %s%s, expected %s%s", vrel_dt_get_name(found),
        brackets(found), vrel_dt_get_name(expected), brackets(expected));
}

}  // namespace Vrel::detail

VProp::VProp(const VProp& other) : content_(VPropCloning::share(other.content_)) {}

VProp::VProp(VProp&& other) noexcept
    : content_(std::exchange(other.content_, nullptr)), info_(std::move(other.info_)) {}

VProp::VProp(const char* text) : VProp(VPropstring(text, VPropstring::encoding_local)) {}
VProp::VProp(const std::string& text) : VProp(VPropstring(text, VPropstring::encoding_local)) {}
VProp::VProp(const wchar_t* text) : VProp(VPropstring(text)) {}
VProp::VProp(const std::wstring& text) : VProp(VPropstring(text)) {}

VProp::~VProp() { VPropDemolition::release(content_); }

VProp& VProp::operator=(const VProp& other) {
  // What is replaced may hold `other`, so it goes last, with the annotation.
  VProp copy(other);
  swap(copy);
  return *this;
}

VProp& VProp::operator=(VProp&& other) noexcept {
  VProp taken(std::move(other));
  swap(taken);
  return *this;
}

const void* VProp::value_ptr() const {
  return static_cast<const placeholder*>(content_)->value_ptr();
}

void* VProp::value_ptr() { return content_->value_ptr(); }

void VProp::hold(int id, const void* value) { content_ = make_holder(id, value); }

void VProp::clear() noexcept { VPropDemolition::release(std::exchange(content_, nullptr)); }

int VProp::get_id() const noexcept { return content_ == nullptr ? id_none : content_->get_id(); }

const std::type_info& VProp::type() const noexcept {
  return content_ == nullptr ? typeid(void) : content_->type();
}

const void* VProp::find(int id) const {
  if (get_id() != id) raise_type_mismatch(get_id(), id);
  return value_ptr();
}

void* VProp::find_or_create(int id) {
  if (empty()) content_ = make_default_holder(id);
  own();
  if (get_id() != id) raise_type_mismatch(get_id(), id);
  return value_ptr();
}

void VProp::own() {
  if (empty() || content_->use_count == 1) return;
  placeholder* const copy = content_->clone();
  --content_->use_count;
  content_ = copy;
}

bool VProp::lock() const noexcept {
  if (empty()) return true;
  if (content_->use_count != 1) return false;
  content_->locked = true;
  return true;
}

VProp& VProp::swap(VProp& other) noexcept {
  info_.swap(other.info_);
  return swap_value(other);
}

VProp& VProp::swap_value(VProp& other) noexcept {
  std::swap(content_, other.content_);
  return *this;
}

VProparrayBase* VProp::get_arr(bool check) const {
  VProparrayBase* const array = with_kind(
      get_id(),
      [this](auto of) -> VProparrayBase* {
        using T = typename decltype(of)::type;
        if constexpr (std::is_base_of_v<VProparrayBase, T>) {
          return static_cast<T*>(content_->value_ptr());
        } else {
          return nullptr;
        }
      },
      []() -> VProparrayBase* { return nullptr; });
  if (array == nullptr && check) raise(id_plain, "Type mismatch: expected 'array' type!");
  return array;
}
