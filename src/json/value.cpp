#include <vrelio/json/value.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace Json {

BadCast::~BadCast() = default;

const char* BadCast::what() const noexcept { return "bad cast"; }

namespace {

// Two values of which the contents are still to be gone through together.
template <class Left>
using Pairs = std::vector<std::pair<const Value*, Left*>>;

// Copies to a null value what is no container, and makes an empty container for what is one.
void copy_node(const Value& from, Value& to, Pairs<Value>& open) {
  switch (from.kind()) {
    case kind_null:
      return;
    case kind_boolean:
      to = from.get<bool>();
      return;
    case kind_integer:
      to = from.get<int>();
      return;
    case kind_decimal:
      to = from.get<double>();
      return;
    case kind_string:
      to = from.get<std::string>();
      return;
    case kind_array:
      to.array();
      break;
    case kind_map:
      to.map();
      break;
  }
  open.emplace_back(&from, &to);
}

void copy_items(const Array& from, Array& to, Pairs<Value>& open) {
  for (const Value& item : from) copy_node(item, to.emplace_back(), open);
}

void copy_entries(const Object& from, Object& to, Pairs<Value>& open) {
  for (const auto& [key, value] : from) {
    copy_node(value, to.emplace_hint(to.end(), key, Value())->second, open);
  }
}

void copy_tree(const Value& source, Value& destination) {
  Pairs<Value> open;
  copy_node(source, destination, open);
  while (!open.empty()) {
    const auto [from, to] = open.back();
    open.pop_back();
    if (from->kind() == kind_array) {
      copy_items(from->array(), to->array(), open);
    } else {
      copy_entries(from->map(), to->map(), open);
    }
  }
}

// Whether two values can be equal, as far as it shows without looking into containers.
bool is_equal_node(const Value& left, const Value& right, Pairs<const Value>& open) {
  if (left.kind() != right.kind()) return false;
  switch (left.kind()) {
    case kind_null:
      return true;
    case kind_boolean:
      return left.get<bool>() == right.get<bool>();
    case kind_integer:
      return left.get<int>() == right.get<int>();
    case kind_decimal:
      return left.get<double>() == right.get<double>();
    case kind_string:
      return left.get<std::string>() == right.get<std::string>();
    case kind_array:
      if (left.array().size() != right.array().size()) return false;
      break;
    case kind_map:
      if (left.map().size() != right.map().size()) return false;
      break;
  }
  open.emplace_back(&left, &right);
  return true;
}

bool are_equal_items(const Array& left, const Array& right, Pairs<const Value>& open) {
  return std::equal(left.begin(), left.end(), right.begin(),
                    [&](const Value& a, const Value& b) { return is_equal_node(a, b, open); });
}

bool are_equal_entries(const Object& left, const Object& right, Pairs<const Value>& open) {
  return std::equal(left.begin(), left.end(), right.begin(), [&](const auto& a, const auto& b) {
    return a.first == b.first && is_equal_node(a.second, b.second, open);
  });
}

}  // namespace

// Takes a tree down level by level. Nothing is allocated on the way: the items of arrays wait in a list
// that takes over their nodes, and maps wait in a chain through their own nodes.
class Value::Demolition {
 public:
  explicit Demolition(Value& value) noexcept {
    take(value);
    while (demolish_item() || demolish_map()) {
    }
  }

 private:
  // Takes over what a container holds.
  void take(Value& value) noexcept {
    if (Array* const array = std::get_if<Array>(&value.content_)) {
      items_.splice(items_.end(), *array);
    } else if (MapPointer* const map = std::get_if<MapPointer>(&value.content_)) {
      (*map)->next = std::move(maps_);
      maps_ = std::move(*map);
    } else {
      return;
    }
    value.content_ = std::monostate();
  }

  bool demolish_item() noexcept {
    if (items_.empty()) return false;
    take(items_.front());
    items_.pop_front();
    return true;
  }

  bool demolish_map() noexcept {
    if (maps_ == nullptr) return false;
    const MapPointer map = std::exchange(maps_, std::move(maps_->next));
    for (auto& entry : map->entries) take(entry.second);
    return true;
  }

  Array items_;
  MapPointer maps_;
};

Value::Value(Object map) : content_(std::make_unique<MapNode>()) { get<Object>() = std::move(map); }

Value::Value(const Value& other) { copy_tree(other, *this); }

Value::Value(Value&& other) noexcept : content_(std::move(other.content_)) {
  other.content_ = std::monostate();
}

void Value::demolish() noexcept { const Demolition demolition(*this); }

Value& Value::operator=(const Value& other) {
  if (this != &other) *this = Value(other);
  return *this;
}

Value& Value::operator=(Value&& other) noexcept {
  if (this == &other) return *this;
  // A container that is replaced may hold `other`, so it goes last.
  Value replaced;
  if (kind() >= kind_array) replaced.content_ = std::move(content_);
  content_ = std::move(other.content_);
  other.content_ = std::monostate();
  return *this;
}

const Value* Value::find(const std::string& key) const {
  if (is_null()) return nullptr;
  const auto entry = map().find(key);
  return entry == map().end() ? nullptr : &entry->second;
}

Array& Value::array() {
  if (kind() == kind_array) return get<Array>();
  Array items;
  if (!is_null()) items.push_back(std::move(*this));
  content_ = std::move(items);
  return get<Array>();
}

Object& Value::map() {
  if (is_null()) content_ = std::make_unique<MapNode>();
  return get<Object>();
}

bool operator==(const Value& left, const Value& right) {
  Pairs<const Value> open;
  if (!is_equal_node(left, right, open)) return false;
  while (!open.empty()) {
    const auto [a, b] = open.back();
    open.pop_back();
    const bool is_equal = a->kind() == kind_array ? are_equal_items(a->array(), b->array(), open)
                                                  : are_equal_entries(a->map(), b->map(), open);
    if (!is_equal) return false;
  }
  return true;
}

}  // namespace Json
