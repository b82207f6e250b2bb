// What a property value points to: a count of the handles that share it, and what they hold.
#pragma once

#include <vrelio/prop/prop.h>

#include <typeinfo>

class VProp::placeholder {
 public:
  placeholder(const placeholder&) = delete;
  placeholder& operator=(const placeholder&) = delete;
  virtual ~placeholder() = default;
  virtual const std::type_info& type() const = 0;
  virtual void* value_ptr() = 0;
  virtual const void* value_ptr() const = 0;
  /// A new holder with a copy of the value, counted once and not locked; the caller's own.
  virtual placeholder* clone() const = 0;
  virtual int get_id() const = 0;

  int use_count = 1;    ///< handles that share this
  bool locked = false;  ///< whether no later copy of a handle may share it

 protected:
  placeholder() = default;
};

template <class T>
class VProp::holder final : public VProp::placeholder {
 public:
  explicit holder(const T& value) : value_(value) {}
  holder() = default;

  const std::type_info& type() const override { return typeid(T); }
  void* value_ptr() override { return &value_; }
  const void* value_ptr() const override { return &value_; }
  placeholder* clone() const override { return new holder(value_); }
  int get_id() const override { return Vrel::prop_id<T>; }

 private:
  T value_{};
};
