// The dynamically typed value that property trees are made of.
#pragma once

#include <vrelio/export.h>
#include <vrelio/prop/kind.h>

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <string>
#include <type_traits>
#include <typeinfo>

class VProparrayBase;

/// An annotation that a handle carries; what it holds is up to the program.
class VPropInfo;

// Its virtual functions only give access; a handle is destroyed as what it is.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// A handle to nothing, to a scalar or to an array: the node of a property tree.
///
/// Copies share what they hold until one of them is written: every access that could change the value
/// makes its handle the sole owner first. A copy is of one level; what is below stays shared until it is
/// written itself. Copying, comparing and destroying take no stack in proportion to the depth of a tree.
///
/// Nothing is derived from it, since its destructor is not virtual.
///
/// Handles that share a value are used by one thread at a time; nothing is counted atomically.
///
/// ```cpp
/// VProp tree;
/// tree["scan.axes{1}.label"] = "\xC2\xB5-stage";
/// VProp copy(tree);                          // costs nothing
/// copy["scan.axes{1}.label"] = "piezo";      // tree keeps its label
/// ```
class VRELIO_EXPORT VProp final {
 public:
  /// "Not given", for indices that can be left out.
  static constexpr unsigned int not_given = 0xFFFFFFFF;

  class placeholder;
  template <class T>
  class holder;

  /// Nothing.
  VProp() noexcept = default;
  /// The same value, without the annotation. It is shared unless the value of `other` is locked; then
  /// it is copied.
  VProp(const VProp& other);
  /// Take over value and annotation and leave `other` empty.
  VProp(VProp&& other) noexcept;
  /// A copy of a number, a struct, a text or an array; any of the types that have a `Vrel::prop_id`,
  /// and the integer types of the same sizes.
  template <class T, class = std::enable_if_t<Vrel::prop_id<Vrel::prop_type<T>> != 0>>
  // NOLINTNEXTLINE(google-explicit-constructor): what can be held is a value
  VProp(const T& held) {
    const Vrel::prop_type<T>& value = held;
    hold(Vrel::prop_id<Vrel::prop_type<T>>, &value);
  }
  // NOLINTBEGIN(google-explicit-constructor): a text is a value
  VProp(const char* text);          ///< a text in the local encoding, up to its zero character
  VProp(const std::string& text);   ///< a text in the local encoding
  VProp(const wchar_t* text);       ///< a text up to its zero character
  VProp(const std::wstring& text);  ///< a text
  // NOLINTEND(google-explicit-constructor)
  ~VProp();

  /// Become a copy of `other`. The handle loses its annotation and gets none.
  VProp& operator=(const VProp& other);
  /// Take over value and annotation and leave `other` empty.
  VProp& operator=(VProp&& other) noexcept;

  /// Slot 1. What is held; the handle must not be empty.
  virtual const void* value_ptr() const;
  /// Slot 2. What is held, also by the copies that share it; the handle must not be empty.
  virtual void* value_ptr();

  /// Whether nothing is held.
  bool empty() const noexcept { return content_ == nullptr; }
  /// Hold nothing. The annotation stays.
  void clear() noexcept;
  /// The data type id of what is held, with the array flag for an array; 0 for nothing.
  int get_id() const noexcept;
  /// The run-time type of what is held; that of void for nothing.
  const std::type_info& type() const noexcept;

  /// What is held.
  /// \throws VrelError "Type mismatch: found %s%s, expected %s%s" (-1) if it is no T.
  template <class T>
  const T& get() const {
    static_assert(Vrel::prop_id<T> != 0, "no property value holds this type");
    return *static_cast<const T*>(find(Vrel::prop_id<T>));
  }
  /// What is held, to be changed: an empty handle holds a default T first, and a shared value is
  /// copied.
  /// \throws VrelError "Type mismatch: found %s%s, expected %s%s" (-1) if it is no T.
  template <class T>
  T& get() {
    static_assert(Vrel::prop_id<T> != 0, "no property value holds this type");
    return *static_cast<T*>(find_or_create(Vrel::prop_id<T>));
  }

  /// Make this handle the only one of its value, which is copied if it is shared.
  void own();
  /// Let no later copy of this handle share its value, so that references to the value stay its own.
  /// This cannot be undone.
  /// \return false, and nothing has changed, if the value is shared now. True for an empty handle.
  bool lock() const noexcept;
  /// Exchange value and annotation.
  VProp& swap(VProp& other) noexcept;
  /// Exchange the values and leave the annotations.
  VProp& swap_value(VProp& other) noexcept;

  /// The annotation; null for none.
  boost::shared_ptr<VPropInfo> get_info() const { return info_; }
  /// Set the annotation of this handle.
  void set_info(boost::shared_ptr<VPropInfo> info) const { info_.swap(info); }

  /// Whether both hold values of the same kind that are equal, or both nothing. Structs are compared in
  /// the order of their fields, arrays without their shape. A not-a-number equals nothing.
  bool operator==(const VProp& other) const;
  /// The opposite of `==`.
  bool operator!=(const VProp& other) const { return !(*this == other); }

  /// The array that is held, as it is shared.
  /// \return null if no array is held and `check` is false.
  /// \throws VrelError "Type mismatch: expected 'array' type!" (-1) if no array is held and `check` is
  ///   true.
  VProparrayBase* get_arr(bool check) const;

  /// The value at a path, which is created as far as it is missing; see `getp`.
  VProp& operator[](const std::string& path) { return getp(path, true); }
  /// The value at a path; see `getp`.
  const VProp& operator[](const std::string& path) const { return getp(path); }
  /// No number is a path.
  VProp& operator[](std::nullptr_t) = delete;
  /// No number is a path.
  const VProp& operator[](std::nullptr_t) const = delete;

  /// The value at a path such as `scan.axes{1}.label`: fields behind dots, the elements of cell arrays in
  /// braces, those of struct arrays in parentheses, counted from 0. An empty path is this value.
  ///
  /// \param path  names and positions.
  /// \param create  whether what is missing is created. What was created stays after an error.
  /// \throws VrelError (-1) for a text that is no path, and for a value that does not exist or is of
  ///   another kind; docs/errors.md has the messages.
  VProp& getp(const std::string& path, bool create);
  /// The value at a path, which has to exist; see the other form.
  const VProp& getp(const std::string& path) const;

  /// An element of a cell array, which grows to it. An empty handle becomes a cell array. One index is
  /// a position along the only row.
  /// \throws VrelError (-1) as `get` and `VProparrayBase::get_idx`.
  VProp& operator()(unsigned int i = not_given, unsigned int j = not_given,
                    unsigned int k = not_given, unsigned int l = not_given);
  /// An element of a cell array, which has to exist; see the other form.
  const VProp& operator()(unsigned int i = not_given, unsigned int j = not_given,
                          unsigned int k = not_given, unsigned int l = not_given) const;
  /// An element of a struct array, which grows to it. An empty handle becomes a struct array.
  /// \throws VrelError (-1) as `get` and `VProparrayBase::get_idx`.
  VPropstruct& s(unsigned int i = not_given, unsigned int j = not_given, unsigned int k = not_given,
                 unsigned int l = not_given);
  /// An element of a struct array, which has to exist; see the other form.
  const VPropstruct& s(unsigned int i = not_given, unsigned int j = not_given,
                       unsigned int k = not_given, unsigned int l = not_given) const;

 private:
  friend class VPropCloning;
  friend class VPropDemolition;

  void hold(int id, const void* value);
  const void* find(int id) const;
  void* find_or_create(int id);

  placeholder* content_ = nullptr;             // counted in itself
  mutable boost::shared_ptr<VPropInfo> info_;  // of this handle, not of the value
};

#pragma GCC diagnostic pop
