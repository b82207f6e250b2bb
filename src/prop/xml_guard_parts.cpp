// What the guard passes beside elements: references of characters, and declarations.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "prop/xml_scanner_internal.h"

namespace Vrel::detail {
namespace {

constexpr std::uint32_t no_digit = 99;

std::uint32_t digit_of(char c) {
  if (c >= '0' && c <= '9') return static_cast<std::uint32_t>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<std::uint32_t>(c - 'a' + 10);
  if (c >= 'A' && c <= 'F') return static_cast<std::uint32_t>(c - 'A' + 10);
  return no_digit;
}

void check_reference(Xml_scanner& scanner, std::uint32_t base) {
  constexpr std::size_t highest_length = 8;
  const std::size_t begin = scanner.place();
  std::uint32_t code = 0;
  for (char c = scanner.peek(); c != ';'; c = scanner.peek()) {
    const std::uint32_t digit = digit_of(c);
    const bool goes_on = digit < base && scanner.place() - begin < highest_length;
    scanner.require(goes_on, "A reference of a character is broken");
    code = code * base + digit;
    scanner.go_to(scanner.place() + 1);
  }
  scanner.require(is_xml_character(code), "A reference is to no character");
}

// The XML library drops the `&` of any other.
bool take_entity(Xml_scanner& scanner) {
  return scanner.take("amp;") || scanner.take("lt;") || scanner.take("gt;") ||
         scanner.take("quot;") || scanner.take("apos;");
}

bool take_declared(Xml_scanner& scanner) {
  if (!scanner.take("version") && !scanner.take("encoding") && !scanner.take("standalone")) {
    return false;
  }
  scanner.skip_blanks();
  if (!scanner.take("=")) return false;
  scanner.skip_blanks();
  const char quote = scanner.peek();
  if (quote != '"' && quote != '\'') return false;
  scanner.go_to(scanner.place() + 1);
  scanner.take_name_bytes();
  return scanner.take(std::string_view(&quote, 1));
}

// Such as `?xml version="1.0" encoding="UTF-8" standalone="yes" ?`.
bool is_plain_declaration(std::string_view content) {
  Xml_scanner scanner(content);
  if (!scanner.take("?xml")) return false;
  while (scanner.skip_blanks() && scanner.peek() != '?') {
    if (!take_declared(scanner)) return false;
  }
  return scanner.take("?") && scanner.is_at_end();
}

// Whether the library reads it as a declaration, as it does in any case of letters.
bool is_declaration(std::string_view content) {
  constexpr std::string_view name = "?xml";
  return std::equal(
      name.begin(), name.end(), content.begin(),
      content.begin() + static_cast<std::ptrdiff_t>(std::min(name.size(), content.size())),
      [](char expected, char found) { return expected == found || expected == (found | 0x20); });
}

// Whether the library does more than pass it: quotes may hide its end.
bool is_for_library(std::string_view content) {
  return is_declaration(content) || content.find_first_of("\"'") != std::string_view::npos;
}

bool is_document_type(std::string_view content) {
  constexpr std::string_view name = "!DOCTYPE";
  return content.substr(0, name.size()) == name && content.size() > name.size() &&
         is_xml_blank(content[name.size()]);
}

}  // namespace

void check_xml_references(Xml_scanner& scanner, std::size_t end) {
  const std::size_t begin = scanner.place();
  const std::string_view text = scanner.between(begin, end);
  for (std::size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
    scanner.go_to(begin + at + 1);
    if (scanner.take("#")) {
      check_reference(scanner, scanner.take("x") ? 16 : 10);
    } else {
      scanner.require(take_entity(scanner), "A reference is to nothing");
    }
  }
  scanner.go_to(end);
}

void check_xml_prolog(Xml_scanner& scanner, bool is_behind_root) {
  const std::size_t end = scanner.find('>', "A declaration has no end");
  const std::string_view content = scanner.between(scanner.place(), end);
  const bool is_instruction = content.substr(0, 1) == "?";
  const bool may_be_behind_root = is_instruction && !is_declaration(content);
  scanner.require(content.find('<') == std::string_view::npos,
                  "A declaration has a part with brackets");
  scanner.require(is_instruction || is_document_type(content), "A declaration is unknown");
  scanner.require(!is_behind_root || may_be_behind_root, "A declaration stands behind the root");
  scanner.require(!is_instruction || (content.size() > 1 && content.back() == '?'),
                  "A declaration has no end");
  scanner.require(!is_instruction || !is_for_library(content) || is_plain_declaration(content),
                  "A declaration has an unknown attribute");
  scanner.go_to(end + 1);
}

}  // namespace Vrel::detail
