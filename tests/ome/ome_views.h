// The views as the library has them, and what their tests share.
#pragma once

#include <gtest/gtest.h>
#include <vrelio/ome/document.h>

#include <boost/make_shared.hpp>
#include <sstream>
#include <string>
#include <vector>

using Signaling = Json::SignalingReference;
using Plane = Ome::Plane<Signaling>;
using Channel = Ome::Channel<Signaling>;
using LightSourceSettings = Ome::LightSourceSettings<Signaling>;
using ManufacturerSpec = Ome::ManufacturerSpec<Signaling>;
using LightSource = Ome::LightSource<Signaling>;
using Instrument = Ome::Instrument<Signaling>;
using Image = Ome::Image<Signaling>;
using Document = Ome::Document<Signaling>;

inline std::string text_of(const Json::Value& value) {
  std::ostringstream stream;
  stream << value;
  return stream.str();
}

/// The node at the end of a path of keys; fails the test and gives null where there is none.
inline const Json::Value& node_at(const Json::Value& tree, const std::vector<std::string>& path) {
  static const Json::Value nothing;
  const Json::Value* node = &tree;
  for (const std::string& key : path) {
    node = node->find(key);
    if (node == nullptr) {
      ADD_FAILURE() << "no key \"" << key << "\" in " << text_of(tree);
      return nothing;
    }
  }
  return *node;
}

/// Notes each value that a field has announced, as text.
class NotingListener : public Json::Listener {
 public:
  using Read = std::string (*)(const void* value);
  explicit NotingListener(Read read) : read_(read) {}
  void on_change(const void* value) override {
    notes.push_back(value == nullptr ? "unset" : read_(value));
  }

  std::vector<std::string> notes;

 private:
  Read read_;
};

inline std::string read_string(const void* value) {
  return *static_cast<const std::string*>(value);
}

template <class T>
std::string read_native(const void* value) {
  std::ostringstream stream;
  stream << *static_cast<const T*>(value);
  return stream.str();
}

/// A listener to a field, which stays set.
template <class T>
boost::shared_ptr<NotingListener> listen_to(T& field, NotingListener::Read read) {
  const auto listener = boost::make_shared<NotingListener>(read);
  field.set_listener(listener);
  return listener;
}

#define EXPECT_BAD_CAST(statement)                   \
  do {                                               \
    try {                                            \
      statement;                                     \
      ADD_FAILURE() << #statement " raised nothing"; \
    } catch (const std::bad_cast& raised) {          \
      EXPECT_STREQ(raised.what(), "bad cast");       \
    }                                                \
  } while (false)
