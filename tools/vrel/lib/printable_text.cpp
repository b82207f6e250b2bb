#include "lib/printable_text.h"

#include <cstdio>

#include "lib/utf8.h"

namespace Vrel::tool {

namespace {

// Bytes of a text that are shown.
constexpr std::size_t shown_size = 200;

bool is_between(char32_t code, char32_t first, char32_t last) {
  return code >= first && code <= last;
}

bool turns_direction(char32_t code) {
  return is_between(code, 0x200E, 0x200F) || is_between(code, 0x202A, 0x202E) ||
         is_between(code, 0x2066, 0x2069);
}

bool is_control(char32_t code) {
  return code < 0x20 || is_between(code, 0x7F, 0x9F) || is_between(code, 0x2028, 0x2029) ||
         turns_direction(code);
}

std::string escape(char32_t code) {
  if (code == U'\n') return "\\n";
  if (code == U'\r') return "\\r";
  if (code == U'\t') return "\\t";
  char text[16];
  std::snprintf(text, sizeof text, code < 0x80 ? "\\x%02X" : "\\u%04X",
                static_cast<unsigned>(code));
  return text;
}

std::string escape_characters(std::string_view text, std::string_view also) {
  const std::string sound = repair_utf8(text);
  std::string_view rest = sound;
  std::string shown;
  while (!rest.empty()) {
    const std::string_view character = rest.substr(0, utf8_sequence_length(rest));
    const char32_t code = decode_utf8(character);
    if (also.find(character) != std::string_view::npos) shown += '\\';
    if (is_control(code)) {
      shown += escape(code);
    } else {
      shown += character;
    }
    rest.remove_prefix(character.size());
  }
  return shown;
}

// The beginning of a text, not cut within a character.
std::string_view beginning(std::string_view text) {
  std::size_t size = shown_size;
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) --size;
  return text.substr(0, size == 0 ? shown_size : size);
}

}  // namespace

std::string printable(std::string_view text) { return escape_characters(text, ""); }

std::string quote(std::string_view text) {
  const auto in_marks = [](std::string_view part) {
    return '"' + escape_characters(part, "\"\\") + '"';
  };
  if (text.size() <= shown_size) return in_marks(text);
  return in_marks(beginning(text)) + ".. (" + std::to_string(text.size()) + " bytes)";
}

}  // namespace Vrel::tool
