#include "prop/xml_attributes_internal.h"

#include <charconv>
#include <string>
#include <string_view>

#include "prop/xml_characters_internal.h"

namespace Vrel::detail {
namespace {

[[noreturn]] void refuse(const char* name, const char* text) {
  throw Xml_error("Attribute '" + std::string(name) + "' cannot be read from '" + text + "'");
}

void skip_blanks(std::string_view& text) {
  while (!text.empty() && is_xml_blank(text.front())) text.remove_prefix(1);
}

template <class T>
bool take_integer(std::string_view& text, T& number) {
  skip_blanks(text);
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc()) return false;
  text = std::string_view(stop, static_cast<std::size_t>(end - stop));
  skip_blanks(text);
  return true;
}

template <class T>
std::optional<T> find_number(Xml_view element, const char* name) {
  const char* const written = element.attribute(name);
  if (written == nullptr) return std::nullopt;
  std::string_view text = written;
  T number = 0;
  if (!take_integer(text, number) || !text.empty()) refuse(name, written);
  return number;
}

}  // namespace

std::optional<int> find_integer(Xml_view element, const char* name) {
  return find_number<int>(element, name);
}

std::optional<std::uint64_t> find_bits(Xml_view element, const char* name) {
  return find_number<std::uint64_t>(element, name);
}

bool read_flag(Xml_view element, const char* name) {
  const char* const written = element.attribute(name);
  if (written == nullptr) return false;
  const std::string_view text = written;
  if (text == "1" || text == "true") return true;
  if (text != "0" && text != "false") refuse(name, written);
  return false;
}

VProparrayBase::index_list read_size(Xml_view element) {
  const char* const written = element.attribute("size");
  if (written == nullptr) return {1, 1};
  std::string_view text = written;
  VProparrayBase::index_list size;
  skip_blanks(text);
  while (!text.empty()) {
    if (!take_integer(text, size.emplace_back())) refuse("size", written);
  }
  return size;
}

}  // namespace Vrel::detail
