#include "ome/exchange_internal.h"

#include <utility>
#include <vector>

namespace Ome {
namespace {

class Exchange {
 public:
  explicit Exchange(Json::Array& remains) : remains_(remains) {}

  bool run(Json::Value& node, Json::Value& value) {
    open_.emplace_back(&node, &value);
    while (!open_.empty()) {
      const auto [to, from] = open_.back();
      open_.pop_back();
      exchange(*to, *from);
    }
    return has_changed_;
  }

 private:
  void exchange(Json::Value& to, Json::Value& from) {
    if (to.kind() == Json::kind_map && from.is_null()) {
      clear_entries(to.map());
    } else if (to.kind() == Json::kind_map && from.kind() == Json::kind_map) {
      exchange_entries(to.map(), from.map());
    } else if (to.kind() == Json::kind_array && from.kind() == Json::kind_array) {
      exchange_items(to.array(), from.array());
    } else if (to != from) {
      replace(to, from);
    }
  }

  void clear_entries(Json::Object& to) {
    for (auto& entry : to) open_.emplace_back(&entry.second, &nothing_);
  }

  void exchange_entries(Json::Object& to, Json::Object& from) {
    for (auto& [key, entry] : to) {
      const auto other = from.find(key);
      open_.emplace_back(&entry, other == from.end() ? &nothing_ : &other->second);
    }
    const std::size_t size = to.size();
    to.merge(from);
    has_changed_ = has_changed_ || to.size() != size;
  }

  void exchange_items(Json::Array& to, Json::Array& from) {
    auto old = to.begin();
    auto fresh = from.begin();
    for (; old != to.end() && fresh != from.end(); ++old, ++fresh) {
      open_.emplace_back(&*old, &*fresh);
    }
    has_changed_ = has_changed_ || old != to.end() || fresh != from.end();
    remains_.splice(remains_.end(), to, old, to.end());
    to.splice(to.end(), from, fresh, from.end());
  }

  void replace(Json::Value& to, Json::Value& from) {
    if (to.kind() >= Json::kind_array) remains_.push_back(std::move(to));
    to = std::move(from);
    has_changed_ = true;
  }

  Json::Array& remains_;
  std::vector<std::pair<Json::Value*, Json::Value*>> open_;
  Json::Value nothing_;
  bool has_changed_ = false;
};

}  // namespace

bool exchange_below(Json::Value& node, Json::Value value, Json::Array& remains) {
  return Exchange(remains).run(node, value);
}

}  // namespace Ome
