// Destroys trees of property values.
#pragma once

#include <vrelio/prop/prop.h>

#include <utility>

#include "prop/holder_internal.h"
#include "prop/kind_list_internal.h"

/// Gives up the holders that nobody shares any more, whatever the depth of the tree below: without
/// recursion, and without memory, which a destructor could not ask for. A container that waits for its
/// turn keeps the next one that waits in its own first slot.
class VPropDemolition {
 public:
  /// A handle gives up its share.
  static void release(VProp::placeholder* content) noexcept {
    VPropDemolition demolition;
    demolition.drop(content);
    while (demolition.waiting_ != nullptr) demolition.demolish_next();
  }

 private:
  using placeholder = VProp::placeholder;

  // Calls `visit` with each slot of a container until it gives true.
  template <class Visit>
  static bool find_slot(placeholder& holder, Visit visit) {
    using namespace Vrel::detail;
    switch (holder.get_id()) {
      case id_struct:
        return find_in(*static_cast<VPropstruct*>(holder.value_ptr()), visit);
      case id_cell_array:
        for (VProp& slot : *static_cast<VProparray<VProp>*>(holder.value_ptr())) {
          if (visit(slot)) return true;
        }
        return false;
      case id_struct_array:
        for (VPropstruct& fields : *static_cast<VProparray<VPropstruct>*>(holder.value_ptr())) {
          if (find_in(fields, visit)) return true;
        }
        return false;
      default:
        return false;
    }
  }

  template <class Visit>
  static bool find_in(VPropstruct& fields, Visit visit) {
    for (auto& field : fields) {
      if (visit(field.second)) return true;
    }
    return false;
  }

  static VProp* first_slot(placeholder& holder) {
    VProp* first = nullptr;
    find_slot(holder, [&first](VProp& slot) {
      first = &slot;
      return true;
    });
    return first;
  }

  // Gives up a share. What dies is destroyed if it holds no values, else it waits, and its first value is
  // given up in turn to make room for the link.
  void drop(placeholder* content) noexcept {
    while (content != nullptr && --content->use_count == 0) {
      VProp* const slot = first_slot(*content);
      if (slot == nullptr) {
        delete content;
        return;
      }
      placeholder* const first = std::exchange(slot->content_, std::exchange(waiting_, content));
      content = first;
    }
  }

  void demolish_next() noexcept {
    placeholder* const holder = waiting_;
    waiting_ = std::exchange(first_slot(*holder)->content_, nullptr);
    find_slot(*holder, [this](VProp& slot) {
      drop(std::exchange(slot.content_, nullptr));
      return false;
    });
    delete holder;
  }

  placeholder* waiting_ = nullptr;
};
