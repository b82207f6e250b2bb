// The member functions of lists, for the files that instantiate them.
#pragma once

#include <vrelio/ome/list.h>

#include <boost/make_shared.hpp>
#include <utility>

namespace Ome {

template <class T>
List<T>::List(Parent& parent, const char* key) : parent_(parent), key_(key) {
  look();
}

template <class T>
const typename List<T>::Views& List<T>::views() const {
  look();
  return views_;
}

template <class T>
boost::shared_ptr<T> List<T>::operator[](std::size_t index) const {
  if (index >= size()) throw Json::BadCast();
  return views_[index];
}

// The element is made apart, so that one that cannot be viewed leaves no trace.
template <class T>
boost::shared_ptr<T> List<T>::append(Json::Value initial) {
  look();
  Json::Array& items = parent_.bind(key_).array();
  Json::Array fresh(1);
  const unsigned number = static_cast<unsigned>(views_.size()) + 1;
  views_.push_back(
      boost::make_shared<T>(&fresh.back(), std::move(initial), number, parent_.remains()));
  items.splice(items.end(), fresh);
  return views_.back();
}

// Only addresses are compared: the item that the view has seen may be gone.
template <class T>
bool List<T>::shows(std::size_t index, const Json::Value& item) const {
  return index < views_.size() && &views_[index]->Element.value() == &item;
}

// Items come and go at the end only, so the last one tells about all of them.
template <class T>
void List<T>::look() const {
  Json::Value& node = parent_.bind(key_);
  if (node.is_null()) return views_.clear();
  Json::Array& items = node.array();
  const bool is_same_size = views_.size() == items.size();
  if (is_same_size && (items.empty() || shows(items.size() - 1, items.back()))) return;
  look_again(items);
}

template <class T>
void List<T>::look_again(Json::Array& items) const {
  std::size_t index = 0;
  auto item = items.begin();
  for (; item != items.end() && shows(index, *item); ++item) ++index;
  views_.resize(index);
  for (; item != items.end(); ++item) {
    views_.push_back(boost::make_shared<T>(&*item, Json::Value(), 0U, parent_.remains()));
  }
}

}  // namespace Ome
