#include <vrelio/json/write_xml.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "json/text_output_internal.h"
#include "json/xml_reference_internal.h"

namespace Json {

namespace {

constexpr std::string_view declaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";

bool is_escaped(char c) { return detail::find_xml_reference(c) != nullptr; }

bool is_container(const Value& value) {
  return value.kind() == kind_array || value.kind() == kind_map;
}

// What stands for no element.
bool is_nothing(const Value& value) {
  return value.is_null() || (value.kind() == kind_string && value.get<std::string>().empty());
}

// The content of an element; null if it has none.
const Value* content_of(const Value& element) {
  if (element.kind() != kind_map) return &element;
  const Value* const content = element.find("");
  return content == nullptr || content->is_null() ? nullptr : content;
}

struct Element {
  const std::string* name;
  const Value* value;
};

// Goes through the elements that a map stands for.
class Children {
 public:
  // The children of an element of this name; null for those of the document.
  Children(const Object& map, const std::string* parent)
      : parent_(parent), entry_(map.begin()), end_(map.end()) {
    begin_entry();
  }

  const std::string* parent() const { return parent_; }

  bool at_end() const { return entry_ == end_; }

  // The entry's value, or the next of its items; without a value if there is no further item.
  Element next() {
    const auto& [name, value] = *entry_;
    if (value.kind() != kind_array) {
      end_entry();
      return {&name, &value};
    }
    if (item_ != value.array().end()) return {&name, &*item_++};
    end_entry();
    return {&name, nullptr};
  }

 private:
  void begin_entry() {
    if (entry_ != end_ && entry_->second.kind() == kind_array)
      item_ = entry_->second.array().begin();
  }

  void end_entry() {
    ++entry_;
    begin_entry();
  }

  const std::string* parent_;
  Object::const_iterator entry_;
  Object::const_iterator end_;
  Array::const_iterator item_;
};

class XmlWriter {
 public:
  explicit XmlWriter(std::ostream& out) : out_(out) {}

  void write_document(const Value& value) {
    if (!value.is_null()) open_.emplace_back(value.map(), nullptr);
    out_.put(declaration);
    while (!open_.empty()) {
      if (open_.back().at_end()) {
        end_children();
      } else {
        const Element element = open_.back().next();
        if (element.value != nullptr && !is_nothing(*element.value)) write_element(element);
      }
    }
    out_.finish();
  }

 private:
  // Of content that is a map only the beginning is written.
  void write_element(const Element& element) {
    out_.put('<');
    out_.put(*element.name);
    if (element.value->kind() == kind_map) write_attributes(element.value->map());
    const Value* const content = content_of(*element.value);
    if (content == nullptr) return out_.put("/>");
    out_.put('>');
    write_content(*content, *element.name);
  }

  void write_attributes(const Object& map) {
    for (const auto& [key, value] : map) {
      if (key.empty() || value.is_null()) continue;
      if (is_container(value)) throw std::invalid_argument("No xml attribute");
      out_.put(' ');
      out_.put(key);
      out_.put("=\"");
      write_scalar(value);
      out_.put('"');
    }
  }

  void write_content(const Value& content, const std::string& name) {
    if (content.kind() == kind_array) throw std::invalid_argument("No xml content");
    if (content.kind() == kind_map) {
      open_.emplace_back(content.map(), &name);
    } else {
      write_scalar(content);
      write_end_tag(name);
    }
  }

  void end_children() {
    const std::string* const parent = open_.back().parent();
    open_.pop_back();
    if (parent != nullptr) write_end_tag(*parent);
  }

  void write_end_tag(const std::string& name) {
    out_.put("</");
    out_.put(name);
    out_.put('>');
  }

  // Containers and null are dealt with before.
  void write_scalar(const Value& value) {
    switch (value.kind()) {
      case kind_boolean:
        return out_.put_boolean(value.get<bool>());
      case kind_integer:
        return out_.put_integer(value.get<int>());
      case kind_decimal:
        return out_.put_decimal(value.get<double>());
      default:
        return write_string(value.get<std::string>());
    }
  }

  void write_string(std::string_view string) {
    out_.put_escaped(string, is_escaped, [this](char c) { write_reference(c); });
  }

  void write_reference(char c) {
    out_.put('&');
    out_.put(detail::find_xml_reference(c)->name);
    out_.put(';');
  }

  detail::TextOutput out_;
  std::vector<Children> open_;
};

}  // namespace

void write_xml(const Value& value, std::ostream& out) { XmlWriter(out).write_document(value); }

}  // namespace Json
