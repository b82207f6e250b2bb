// The identifiers that elements of an OME document get by their position.
#pragma once

#include <vrelio/export.h>
#include <vrelio/json/value.h>

namespace Ome {

/// Makes the ID of an element, for instance "Channel:3".
struct VRELIO_EXPORT Id {
  /// The ID number `position` of the elements called `name`, a text that has to outlive this object.
  Id(const char* name, unsigned int position) noexcept : prefix(name), number(position) {}
  /// The prefix, a colon and the number in decimal; null for the number 0, so that a default made of it
  /// sets nothing.
  operator Json::Value() const;  // NOLINT(google-explicit-constructor): it is assigned to fields

  const char* prefix;   ///< name of the kind of element
  unsigned int number;  ///< counts from 1; 0 is no number
};

}  // namespace Ome
