#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

#include "foundation/unicode_internal.h"
#include "prop/xml_characters_internal.h"

namespace Vrel::detail {
namespace {

// Whether eight bytes are ASCII from the blank on.
bool are_plain(const char* bytes) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  const std::uint64_t below_blank = (word - ones * 0x20) & ~word;
  return ((word | below_blank) & (ones * 0x80)) == 0;
}

bool is_ascii(char c) { return static_cast<unsigned char>(c) < 0x80; }

// Length of the character at the front of a text; 0 if a document cannot hold it.
std::size_t character_length(std::string_view text) {
  if (is_ascii(text.front())) return is_xml_character(static_cast<char32_t>(text.front())) ? 1 : 0;
  std::string_view rest = text;
  const std::optional<char32_t> code = take_code_point(rest);
  return code && is_xml_character(*code) ? text.size() - rest.size() : 0;
}

}  // namespace

std::size_t valid_xml_length(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    if (text.size() - at >= 8 && are_plain(text.data() + at)) {
      at += 8;
      continue;
    }
    const std::size_t length = character_length(text.substr(at));
    if (length == 0) return at;
    at += length;
  }
  return at;
}

bool is_xml_name(std::string_view text) {
  return !text.empty() && is_xml_name_start(text.front()) &&
         std::all_of(text.begin(), text.end(), is_xml_name_byte) &&
         valid_xml_length(text) == text.size();
}

}  // namespace Vrel::detail
