// The dynamic value that JSON and XML text are read into and written from.
#pragma once

#include <vrelio/export.h>

#include <cstddef>
#include <iosfwd>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <variant>

namespace Json {

class Value;

/// An ordered map; keys that are texts are in ascending order of their bytes.
template <class Key, class T>
using Map = std::map<Key, T>;
/// The content of an array, in order.
using Array = std::list<Value>;
/// The content of a map. The empty key is legal; in XML it is the content of an element.
using Object = Map<std::string, Value>;

/// What a value holds, numbered as in `Value::kind()`.
enum Kind : int {
  kind_null = 0,     ///< nothing
  kind_boolean = 1,  ///< `bool`
  kind_integer = 2,  ///< `int`, 32 bits
  kind_decimal = 3,  ///< `double`
  kind_string = 4,   ///< `std::string`, any bytes
  kind_array = 5,    ///< `Json::Array`
  kind_map = 6       ///< `Json::Object`
};

/// "bad cast": a value was asked for content of a kind that it does not hold.
class VRELIO_EXPORT BadCast : public std::bad_cast {
 public:
  ~BadCast() override;
  /// "bad cast".
  const char* what() const noexcept override;
};

/// A value of one of seven kinds, which owns its content: copying is deep.
///
/// The nodes of an array and of a map do not move: a reference to an item or an entry stays valid
/// while its container is not changed at that node, also when the value around it is moved.
/// Destroying, copying, comparing and writing take no stack in proportion to the depth of the value.
/// A value tree is used by one thread at a time. A list or a map that grows raises `std::bad_alloc`
/// where there is no memory.
///
/// ```cpp
/// Json::Value image;
/// image["sizes"].array().emplace_back(512);
/// std::cout << image;  // {"sizes":[512]}
/// ```
class VRELIO_EXPORT Value {
 public:
  /// Null.
  Value() noexcept = default;
  // NOLINTBEGIN(google-explicit-constructor): content of each kind is a value
  Value(std::nullptr_t) noexcept {}                           ///< null
  Value(bool boolean) noexcept : content_(boolean) {}         ///< a boolean
  Value(int integer) noexcept : content_(integer) {}          ///< an integer
  Value(double decimal) noexcept : content_(decimal) {}       ///< a decimal
  Value(std::string string) : content_(std::move(string)) {}  ///< a string
  Value(const char* string)
      : content_(std::string(string)) {}  ///< a string up to its zero character
  Value(Array array) noexcept : content_(std::move(array)) {}  ///< an array
  Value(Object map);                                           ///< a map
  // NOLINTEND(google-explicit-constructor)
  /// No pointer is a boolean.
  template <class T, class = std::enable_if_t<!std::is_same_v<std::remove_cv_t<T>, char>>>
  Value(T*) = delete;

  /// A deep copy.
  Value(const Value& other);
  /// Take over the content of `other` and leave it null.
  Value(Value&& other) noexcept;
  ~Value();
  /// Become equal to `other`, which may be a part of this value. After a failure nothing has changed.
  Value& operator=(const Value& other);
  /// Take over the content of `other`, which may be a part of this value, and leave it null.
  Value& operator=(Value&& other) noexcept;

  /// What the value holds.
  Kind kind() const noexcept { return static_cast<Kind>(content_.index()); }
  /// Whether the value holds nothing.
  bool is_null() const noexcept { return kind() == kind_null; }

  /// The content, of exactly this type: `bool`, `int`, `double`, `std::string`, `Array` or `Object`.
  /// \throws BadCast "bad cast" if the value is of another kind.
  template <class T>
  T& get();
  /// The content of a constant value; see the other form.
  template <class T>
  const T& get() const;

  /// The entry of a map, created null if absent. A null value becomes a map first.
  /// \throws BadCast "bad cast" if the value is neither null nor a map.
  Value& operator[](const std::string& key) { return map()[key]; }
  /// The entry of a map, or null if there is none; a null value has no entries.
  /// \throws BadCast "bad cast" if the value is neither null nor a map.
  const Value* find(const std::string& key) const;

  /// The list of an array. A null value becomes an empty array first; a value of any other kind becomes
  /// an array with the former value as its only item.
  Array& array();
  /// The list of an array.
  /// \throws BadCast "bad cast" if the value is no array.
  const Array& array() const { return get<Array>(); }
  /// The entries of a map. A null value becomes an empty map first.
  /// \throws BadCast "bad cast" if the value is neither null nor a map.
  Object& map();
  /// The entries of a map.
  /// \throws BadCast "bad cast" if the value is no map.
  const Object& map() const { return get<Object>(); }

 private:
  struct MapNode;
  class Demolition;
  using MapPointer = std::unique_ptr<MapNode>;
  // The order of the kinds.
  using Content = std::variant<std::monostate, bool, int, double, std::string, Array, MapPointer>;

  template <class T>
  const T* find_content() const noexcept;
  // Leaves nothing in a container.
  void demolish() noexcept;

  Content content_;
};

/// Whether kinds and contents are equal. An integer never equals a decimal, and a not-a-number equals
/// nothing.
VRELIO_EXPORT bool operator==(const Value& left, const Value& right);
/// The opposite of `==`.
inline bool operator!=(const Value& left, const Value& right) { return !(left == right); }

/// Write JSON text without blanks, maps in the order of their keys. In a string only the backslash and
/// the double quote are escaped. A decimal without a fraction has one decimal place, any other up to 10
/// significant digits. The flags and the locale of the stream have no influence.
VRELIO_EXPORT std::ostream& operator<<(std::ostream& out, const Value& value);
/// Write the text of a map; see the other form.
VRELIO_EXPORT std::ostream& operator<<(std::ostream& out, const Object& map);

/// The entries of a map, which lie apart from the value: they would make it larger than any other
/// content does.
struct Value::MapNode {
  Object entries;   ///< all of them
  MapPointer next;  ///< while maps wait for their destruction
};

inline Value::~Value() {
  if (kind() >= kind_array) demolish();
}

template <class T>
const T* Value::find_content() const noexcept {
  if constexpr (std::is_same_v<T, Object>) {
    const MapPointer* const node = std::get_if<MapPointer>(&content_);
    return node == nullptr ? nullptr : &(*node)->entries;
  } else {
    return std::get_if<T>(&content_);
  }
}

template <class T>
const T& Value::get() const {
  const T* const content = find_content<T>();
  if (content == nullptr) throw BadCast();
  return *content;
}

template <class T>
T& Value::get() {
  return const_cast<T&>(static_cast<const Value*>(this)->get<T>());
}

}  // namespace Json
