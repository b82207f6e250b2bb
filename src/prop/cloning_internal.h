// Copies trees of locked property values.
#pragma once

#include <vrelio/prop/prop.h>

#include <utility>
#include <vector>

#include "prop/holder_internal.h"

/// Makes what a copy of a handle holds. Locked values that lie in each other are all copied, whatever
/// their depth: without recursion, by a list of the copies that are still to be made.
class VPropCloning {
 public:
  using placeholder = VProp::placeholder;

  /// The holder itself, counted once more, or a copy of one that is locked; null for null.
  static placeholder* share(placeholder* content);

 private:
  void give(VProp& to, placeholder* content);
  placeholder* clone(const placeholder& locked);
  template <class T>
  placeholder* clone_container(const placeholder& locked);
  void copy(const VProp& from, VProp& to) { give(to, from.content_); }
  void copy(const VPropstruct& from, VPropstruct& to);
  template <class T>
  void copy(const VProparray<T>& from, VProparray<T>& to);

  // Empty handles, and what they get a copy of.
  std::vector<std::pair<VProp*, const placeholder*>> open_;
};
