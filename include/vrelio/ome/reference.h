// Handles of nodes in a value tree, with and without a listener; docs/ome.md has the rules.
#pragma once

#include <vrelio/export.h>
#include <vrelio/json/value.h>

#include <boost/shared_ptr.hpp>
#include <utility>

namespace Json {

/// Is told when a field takes a new value.
///
/// The library has no listener of its own and sets none. The order of the virtual functions is part
/// of the binary interface.
class VRELIO_EXPORT Listener {
 public:
  /// Slot 1.
  virtual ~Listener();
  /// Slot 2: a field has taken a new value.
  ///
  /// \param[in] value  the new value in the field's native form, which the field type names: it points
  ///                   at a `std::string`, `bool`, `int`, `double` or `Json::Object`, and is null where
  ///                   the field is unset now and its native form has nothing for that. It is valid
  ///                   until the call returns or the field changes again.
  ///
  /// What it throws leaves the assignment; the new value stays stored.
  virtual void on_change(const void* value) = 0;

 protected:
  /// \cond
  Listener() = default;
  Listener(const Listener&) = default;
  Listener& operator=(const Listener&) = default;
  /// \endcond
};

/// A handle of a value that somebody else owns and that has to outlive the handle.
class VRELIO_EXPORT Reference {
 public:
  /// A handle of `value`.
  explicit Reference(Value& value) noexcept : value_(&value) {}
  /// What the handle stands for; it changes through the handle's own kind of assignment.
  const Value& value() const noexcept { return *value_; }

 protected:
  /// The value, for those who keep its rule.
  Value& node() const noexcept { return *value_; }

 private:
  Value* value_;
};

/// A reference with a listener, of which it holds a share. It has none at first.
class VRELIO_EXPORT SignalingReference : public virtual Reference {
 public:
  /// A handle of `value` without a listener.
  explicit SignalingReference(Value& value) noexcept : Reference(value) {}
  /// Replace the listener; a null pointer for none. A listener may do so while it is called.
  void set_listener(boost::shared_ptr<Listener> listener) noexcept {
    listener_ = std::move(listener);
  }
  /// The listener, or null.
  const boost::shared_ptr<Listener>& listener() const noexcept { return listener_; }

 protected:
  /// Whether somebody listens.
  bool has_listener() const noexcept { return listener_ != nullptr; }
  /// Tell the listener, if there is one; see `Listener::on_change`.
  void signal(const void* value) const;

 private:
  boost::shared_ptr<Listener> listener_;
};

}  // namespace Json
