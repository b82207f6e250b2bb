// The child elements of one name, as a list of views; docs/ome.md, "Lists".
#pragma once

#include <vrelio/json/value.h>
#include <vrelio/ome/fields.h>

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <vector>

namespace Ome {

/// The elements under one key, with one view each.
///
/// The node under the key is null or, from the first look on, an array: a value that stands alone becomes
/// an array of one item. The items do not move, so a view stays valid while the list grows, also
/// when the list is gone; it shows its item until the tree is destroyed. Items that an assignment to an
/// object above the list adds, or takes away from the end, are noticed at the next call.
///
/// `T` is the class of the views, which names its reference type `T::reference`.
template <class T>
class List {
 public:
  /// What holds the key.
  using Parent = Field::Object<typename T::reference>;
  /// The views, in the order of the items.
  using Views = std::vector<boost::shared_ptr<T>>;

  /// View what `parent` has under `key`. No view invents an ID.
  /// \param[in] parent  has to outlive the list.
  /// \param[in] key     has to outlive the list.
  /// \throws Json::BadCast "bad cast" if an item cannot be viewed.
  List(Parent& parent, const char* key);
  List(const List&) = delete;
  List& operator=(const List&) = delete;

  /// Number of elements.
  /// \throws Json::BadCast "bad cast" if an item that is new in the tree cannot be viewed; so for all
  /// functions.
  std::size_t size() const { return views().size(); }
  /// Whether there are no elements.
  bool empty() const { return views().empty(); }
  /// The view of an element; it may be kept.
  /// \throws Json::BadCast "bad cast" if there is no such element.
  boost::shared_ptr<T> operator[](std::size_t index) const;
  /// All views; valid until the number of elements changes.
  const Views& views() const;
  /// The first view; see `views`.
  typename Views::const_iterator begin() const { return views().begin(); }
  /// Behind the last view.
  typename Views::const_iterator end() const { return views().end(); }

  /// Add an element at the end; its number, for an ID, is its position counted from 1.
  /// \param[in] initial  what the element becomes, unless it is null.
  /// \return the new element's view.
  /// \throws Json::BadCast "bad cast" if `initial` cannot be viewed; then the list has not grown.
  boost::shared_ptr<T> append(Json::Value initial = {});

 private:
  // Whether the view at `index` is that of `item`.
  bool shows(std::size_t index, const Json::Value& item) const;
  // Finds out whether the views are those of the items.
  void look() const;
  void look_again(Json::Array& items) const;

  mutable Views views_;
  Parent& parent_;
  const char* key_;
};

}  // namespace Ome
