// What assignments take out of a tree while views of it are alive.
#pragma once

#include <vrelio/export.h>
#include <vrelio/json/value.h>

#include <boost/shared_ptr.hpp>

namespace Ome {

/// Keeps the values that an assignment to an `Object` takes out of the tree, so that views of them stay
/// valid: they show and change what is no longer part of the tree. Copies share one store, which a view
/// and the views of its lists hold together; the last of them frees it.
class VRELIO_EXPORT Remains {
 public:
  /// A store of its own, empty.
  Remains();
  /// The values of all copies, in the order in which they were taken out.
  Json::Array& values() const noexcept { return *values_; }

 private:
  boost::shared_ptr<Json::Array> values_;
};

}  // namespace Ome
