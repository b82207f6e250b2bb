// The JSON text of a value.
#include <vrelio/json/value.h>

#include <ostream>
#include <string_view>
#include <vector>

#include "json/text_output_internal.h"

namespace Json {

namespace {

bool needs_backslash(char c) { return c == '"' || c == '\\'; }

class TextWriter {
 public:
  explicit TextWriter(std::ostream& out) : out_(out) {}

  void write(const Value& value) {
    begin(value);
    write_open_containers();
  }

  void write(const Object& map) {
    begin(map);
    write_open_containers();
  }

 private:
  // A container of which the beginning is written, and what comes next of it.
  struct Container {
    const Array* array;  // or else
    const Object* map;
    Array::const_iterator item;
    Object::const_iterator entry;
  };

  // Writes a value whole, or the beginning of a container.
  void begin(const Value& value) {
    switch (value.kind()) {
      case kind_null:
        return out_.put("null");
      case kind_boolean:
        return out_.put_boolean(value.get<bool>());
      case kind_integer:
        return out_.put_integer(value.get<int>());
      case kind_decimal:
        return out_.put_decimal(value.get<double>());
      case kind_string:
        return write_string(value.get<std::string>());
      case kind_array:
        return begin(value.array());
      default:
        return begin(value.map());
    }
  }

  void begin(const Array& array) {
    out_.put('[');
    open_.push_back({&array, nullptr, array.begin(), {}});
  }

  void begin(const Object& map) {
    out_.put('{');
    open_.push_back({nullptr, &map, {}, map.begin()});
  }

  void write_open_containers() {
    while (!open_.empty()) {
      Container& container = open_.back();
      if (container.array != nullptr) {
        write_next_item(container);
      } else {
        write_next_entry(container);
      }
    }
    out_.finish();
  }

  void write_next_item(Container& container) {
    if (container.item == container.array->end()) return end(']');
    if (container.item != container.array->begin()) out_.put(',');
    begin(*container.item++);
  }

  void write_next_entry(Container& container) {
    if (container.entry == container.map->end()) return end('}');
    if (container.entry != container.map->begin()) out_.put(',');
    const auto& [key, value] = *container.entry++;
    write_string(key);
    out_.put(':');
    begin(value);
  }

  void end(char bracket) {
    out_.put(bracket);
    open_.pop_back();
  }

  void write_string(std::string_view string) {
    out_.put('"');
    out_.put_escaped(string, needs_backslash, [this](char c) {
      out_.put('\\');
      out_.put(c);
    });
    out_.put('"');
  }

  detail::TextOutput out_;
  std::vector<Container> open_;
};

}  // namespace

std::ostream& operator<<(std::ostream& out, const Value& value) {
  TextWriter(out).write(value);
  return out;
}

std::ostream& operator<<(std::ostream& out, const Object& map) {
  TextWriter(out).write(map);
  return out;
}

}  // namespace Json
