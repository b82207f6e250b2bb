#include <vrelio/foundation/error.h>
#include <vrelio/json/write_xml.h>

#include <cstdio>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "lib/printable_text.h"
#include "lib/text_document.h"

namespace Vrel::tool {

namespace {

// A stream's way to an output.
class OutputBuffer : public std::streambuf {
 public:
  explicit OutputBuffer(Output& output) : output_(output) {}

 protected:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    put(std::string_view(text, static_cast<std::size_t>(size)));
    return size;
  }
  int_type overflow(int_type c) override {
    const char text = traits_type::to_char_type(c);
    put(std::string_view(&text, 1));
    return c;
  }
  virtual void put(std::string_view text) { output_.write(text.data(), text.size()); }

 private:
  Output& output_;
};

bool is_control(char c) { return static_cast<unsigned char>(c) < 0x20; }

std::string json_escape(char c) {
  constexpr std::string_view letters = "btn\vfr";  // for the codes 8 to 13
  if (c >= '\b' && c <= '\r' && c != '\v') {
    return {'\\', letters[static_cast<std::size_t>(c - '\b')]};
  }
  char text[7];
  std::snprintf(text, sizeof text, "\\u%04x", static_cast<unsigned>(c));
  return text;
}

// JSON text has control characters only inside strings.
class JsonBuffer : public OutputBuffer {
 public:
  using OutputBuffer::OutputBuffer;

 protected:
  void put(std::string_view text) override {
    escaped_.clear();
    for (const char c : text) is_control(c) ? escaped_ += json_escape(c) : escaped_ += c;
    OutputBuffer::put(escaped_);
  }

 private:
  std::string escaped_;
};

// What the output raises goes through the stream.
template <class Write>
void write_through(OutputBuffer& buffer, Write write) {
  std::ostream out(&buffer);
  out.exceptions(std::ios_base::badbit);
  write(out);
}

bool begins_name(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
         static_cast<unsigned char>(c) > 0x7F;
}

bool continues_name(char c) {
  return begins_name(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

bool is_name(const std::string& key) {
  if (key.empty() || !begins_name(key.front())) return false;
  for (const char c : key) {
    if (!continues_name(c)) return false;
  }
  return true;
}

void check_name(const std::string& key) {
  if (!is_name(key)) throw VrelError()("%s is no XML name!", quote(key).c_str());
}

// What is written as no element.
bool is_nothing(const Json::Value& value) {
  return value.is_null() || (value.kind() == Json::kind_string && value.get<std::string>().empty());
}

using Maps = std::vector<const Json::Object*>;

// The maps of children that an element has are left to be checked.
void check_element(const std::string& key, const Json::Value& element, Maps& children) {
  check_name(key);
  if (element.kind() != Json::kind_map) return;
  for (const auto& [name, value] : element.map()) {
    if (!name.empty()) {
      if (!value.is_null()) check_name(name);
    } else if (value.kind() == Json::kind_map) {
      children.push_back(&value.map());
    }
  }
}

// Calls `use(key, element)` for each element that a map of children stands for.
template <class Use>
void for_each_element(const Json::Object& map, Use use) {
  for (const auto& [key, value] : map) {
    if (value.kind() != Json::kind_array) {
      if (!is_nothing(value)) use(key, value);
      continue;
    }
    for (const Json::Value& item : value.array()) {
      if (!is_nothing(item)) use(key, item);
    }
  }
}

void check_one_root(const Json::Object& object) {
  int count = 0;
  for_each_element(object, [&count](const std::string&, const Json::Value&) { ++count; });
  if (count != 1) throw VrelError()("An XML document has one root element, not %d!", count);
}

void check_document(const Json::Object& object) {
  check_one_root(object);
  Maps open{&object};
  while (!open.empty()) {
    const Json::Object& map = *open.back();
    open.pop_back();
    for_each_element(map, [&open](const std::string& key, const Json::Value& element) {
      check_element(key, element, open);
    });
  }
}

}  // namespace

void write_json_document(const Json::Value& value, Output& output) {
  JsonBuffer buffer(output);
  write_through(buffer, [&value](std::ostream& out) { out << value; });
  output.write("\n", 1);
}

void write_xml_document(const Json::Object& object, Output& output) {
  check_document(object);
  OutputBuffer buffer(output);
  write_through(buffer, [&object](std::ostream& out) { Json::write_xml(object, out); });
  output.write("\n", 1);
}

}  // namespace Vrel::tool
