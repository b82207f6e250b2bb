// Reading and writing JSON text beside a widely used parser, in turns in one run. Both trees are
// compared before anything is timed.
#include <vrelio/json/reader.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <ostream>
#include <random>
#include <sstream>
#include <string>
#include <utility>

#include "support/peer_comparison.h"

namespace {

constexpr std::size_t document_size = 50000000;
constexpr std::size_t slice_size = 64 << 10;

// --- The document: what a script sends about its images

class Document {
 public:
  std::string make() {
    text_ = "{\"images\":[";
    while (text_.size() < document_size) add_image();
    text_.back() = ']';
    text_ += "}";
    return std::move(text_);
  }

 private:
  void add_image() {
    text_ += "{\"name\":\"" + word(4 + random_() % 24) + "\",";
    text_ += "\"comment\":\"" + word(random_() % 80) + "\\n" + word(8) + "\",";
    text_ += "\"width\":" + integer() + ",\"height\":" + integer() + ",";
    text_ += "\"exposure\":" + decimal() + ",\"gain\":" + decimal() + ",";
    text_ += "\"is_live\":true,\"filter\":null,";
    text_ += "\"sizes\":[" + integer() + "," + integer() + "," + integer() + "],";
    text_ += "\"stage\":{\"x\":" + decimal() + ",\"y\":" + decimal() + ",\"z\":" + decimal() + "}";
    if (random_() % 4 == 0) add_profile();
    text_ += "},";
  }

  void add_profile() {
    text_ += ",\"profile\":[" + decimal();
    for (int i = 1; i < 32; ++i) text_ += "," + decimal();
    text_ += "]";
  }

  std::string word(std::size_t size) {
    std::string letters(size, ' ');
    for (char& letter : letters) letter = static_cast<char>('a' + random_() % 26);
    return letters;
  }

  std::string integer() { return std::to_string(random_() % 65536); }
  std::string decimal() { return integer() + "." + std::to_string(1 + random_() % 9999); }

  std::mt19937 random_{8};
  std::string text_;
};

// --- Reading

std::unique_ptr<Json::Reader> read_json(const std::string& text, std::size_t size) {
  auto reader = std::make_unique<Json::Reader>();
  const char* begin = text.data();
  const char* const text_end = begin + text.size();
  bool is_whole = false;
  while (begin != text_end) {
    const char* const end = begin + std::min(size, static_cast<std::size_t>(text_end - begin));
    is_whole = reader->read(begin, end);
  }
  require(is_whole, "the document is not read whole");
  return reader;
}

nlohmann::json parse(const std::string& text) { return nlohmann::json::parse(text); }

// --- Comparing the trees

bool is_same(const Json::Value& ours, const nlohmann::json& peer);

bool is_same(const Json::Object& ours, const nlohmann::json& peer) {
  return peer.is_object() &&
         std::equal(ours.begin(), ours.end(), peer.items().begin(), peer.items().end(),
                    [](const auto& left, const auto& right) {
                      return left.first == right.key() && is_same(left.second, right.value());
                    });
}

bool is_same(const Json::Array& ours, const nlohmann::json& peer) {
  return peer.is_array() &&
         std::equal(ours.begin(), ours.end(), peer.begin(), peer.end(),
                    [](const auto& left, const auto& right) { return is_same(left, right); });
}

bool is_same(const Json::Value& ours, const nlohmann::json& peer) {
  switch (ours.kind()) {
    case Json::kind_null:
      return peer.is_null();
    case Json::kind_boolean:
      return peer.is_boolean() && peer.get<bool>() == ours.get<bool>();
    case Json::kind_integer:
      return peer.is_number_integer() && peer.get<int>() == ours.get<int>();
    case Json::kind_decimal:
      return peer.is_number_float() && peer.get<double>() == ours.get<double>();
    case Json::kind_string:
      return peer.is_string() && peer.get_ref<const std::string&>() == ours.get<std::string>();
    case Json::kind_array:
      return is_same(ours.array(), peer);
    case Json::kind_map:
      return is_same(ours.map(), peer);
  }
  return false;
}

std::size_t count_nodes(const nlohmann::json& value) {
  std::size_t count = 1;
  if (value.is_structured()) {
    for (const nlohmann::json& part : value) count += count_nodes(part);
  }
  return count;
}

void require_same_trees(const std::string& text) {
  const nlohmann::json peer = parse(text);
  require(is_same(read_json(text, text.size())->object(), peer), "one slice gives another tree");
  require(is_same(read_json(text, slice_size)->object(), peer), "slices give another tree");
}

// --- Writing

std::string write_json(const Json::Object& object) {
  std::ostringstream stream;
  stream << object;
  return stream.str();
}

void require_written_text_reads_back(const std::string& text) {
  const auto reader = read_json(text, text.size());
  const auto again = read_json(write_json(reader->object()), slice_size);
  require(again->object() == reader->object(), "what is written is read otherwise");
}

// --- Comparing the times

void compare_reading(const char* name, const std::string& text, std::size_t size) {
  std::unique_ptr<Json::Reader> ours;
  nlohmann::json peer;
  compare(
      name, text.size(), [&] { ours = read_json(text, size); }, [&] { peer = parse(text); });
}

void compare_reading_and_destroying(const std::string& text) {
  compare(
      "read in one slice and destroy", text.size(), [&] { read_json(text, text.size()); },
      [&] { parse(text); });
}

void compare_writing(const std::string& text) {
  const auto ours = read_json(text, text.size());
  const nlohmann::json peer = parse(text);
  compare(
      "write", text.size(), [&] { write_json(ours->object()); }, [&] { peer.dump(); });
}

void compare_memory(const std::string& text) {
  const std::size_t nodes = count_nodes(parse(text));
  print_memory(bytes_per_node([&] { return read_json(text, text.size()); }, nodes),
               bytes_per_node([&] { return parse(text); }, nodes));
}

}  // namespace

int main() {
  const std::string text = Document().make();
  require_same_trees(text);
  require_written_text_reads_back(text);
  std::printf("%.1f MB of text\n", static_cast<double>(text.size()) / 1e6);
  print_comparison_head();
  compare_reading("read in one slice", text, text.size());
  compare_reading("read in slices of 64 KiB", text, slice_size);
  compare_reading_and_destroying(text);
  compare_writing(text);
  compare_memory(text);
}
