#include "lib/plain_xml.h"

#include <vrelio/foundation/error.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <system_error>
#include <vector>

namespace Vrel::tool {

namespace {

constexpr std::size_t longest = std::size_t{64} << 20;
constexpr std::size_t deepest = 64;
constexpr std::string_view blanks = " \t\r\n";

[[noreturn]] void raise_invalid() { throw VrelError(VrelError()("Invalid XML!")(-4)); }

struct EntityRow {
  std::string_view name;
  char character;
};

constexpr EntityRow entities[] = {
    {"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}};

bool is_blank(std::string_view text) {
  return text.find_first_not_of(blanks) == std::string_view::npos;
}

void append_utf8(std::string& text, std::uint32_t code) {
  const auto put = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
  const auto put_rest = [&](unsigned shift) { put(0x80 | (code >> shift & 0x3F)); };
  if (code < 0x80) return put(code);
  if (code < 0x800) {
    put(0xC0 | code >> 6);
  } else if (code < 0x10000) {
    put(0xE0 | code >> 12);
    put_rest(6);
  } else {
    put(0xF0 | code >> 18);
    put_rest(12);
    put_rest(6);
  }
  put_rest(0);
}

void append_numeric(std::string& text, std::string_view digits) {
  const bool is_hexadecimal = !digits.empty() && digits[0] == 'x';
  if (is_hexadecimal) digits.remove_prefix(1);
  std::uint32_t code = 0;
  const char* const end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, code, is_hexadecimal ? 16 : 10);
  const bool is_surrogate = code >= 0xD800 && code < 0xE000;
  if (result.ec != std::errc() || result.ptr != end) raise_invalid();
  if (code == 0 || code > 0x10FFFF || is_surrogate) raise_invalid();
  append_utf8(text, code);
}

void append_reference(std::string& text, std::string_view name) {
  if (!name.empty() && name[0] == '#') return append_numeric(text, name.substr(1));
  for (const EntityRow& row : entities) {
    if (row.name != name) continue;
    text += row.character;
    return;
  }
  raise_invalid();
}

std::string without_references(std::string_view raw) {
  std::string text;
  while (!raw.empty()) {
    const std::size_t begin = std::min(raw.find('&'), raw.size());
    text += raw.substr(0, begin);
    raw.remove_prefix(begin);
    if (raw.empty()) break;
    const std::size_t end = raw.find(';');
    if (end == std::string_view::npos) raise_invalid();
    append_reference(text, raw.substr(1, end - 1));
    raw.remove_prefix(end + 1);
  }
  return text;
}

std::string with_references(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    const EntityRow* found = nullptr;
    for (const EntityRow& row : entities) {
      if (row.character == c) found = &row;
    }
    if (found == nullptr) {
      escaped += c;
    } else {
      escaped += '&';
      escaped += found->name;
      escaped += ';';
    }
  }
  return escaped;
}

std::string_view without_prefix(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

// Goes through the document from one tag to the next.
class Writer {
 public:
  Writer(std::string_view text, std::string_view skipped) : rest_(text), skipped_(skipped) {}

  std::string write() {
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    if (rest_.substr(0, byte_order_mark.size()) == byte_order_mark) {
      rest_.remove_prefix(byte_order_mark.size());
    }
    while (!rest_.empty()) step();
    if (!open_.empty() || !pending_.empty()) raise_invalid();
    return std::move(plain_);
  }

 private:
  bool takes(std::string_view token) {
    if (rest_.substr(0, token.size()) != token) return false;
    rest_.remove_prefix(token.size());
    return true;
  }

  std::string_view take_until(std::string_view end) {
    const std::size_t position = rest_.find(end);
    if (position == std::string_view::npos) raise_invalid();
    const std::string_view taken = rest_.substr(0, position);
    rest_.remove_prefix(position + end.size());
    return taken;
  }

  void step() {
    if (takes("<!--")) {
      take_until("-->");
    } else if (takes("<?")) {
      take_until("?>");
    } else if (takes("<![CDATA[")) {
      pending_ += take_until("]]>");
    } else if (takes("</")) {
      write_text();
      end_element();
    } else if (takes("<")) {
      write_text();
      begin_element();
    } else {
      const std::size_t end = std::min(rest_.find('<'), rest_.size());
      take_text(rest_.substr(0, end));
      rest_.remove_prefix(end);
    }
  }

  void take_text(std::string_view raw) {
    if (open_.empty() && !is_blank(raw)) raise_invalid();
    if (!open_.empty()) pending_ += without_references(raw);
  }

  bool is_skipping() const { return skipping_from_ != 0; }

  void write_text() {
    if (!is_skipping() && !is_blank(pending_)) {
      plain_ += xml_text_mark + with_references(pending_);
    }
    pending_.clear();
  }

  std::string_view take_name() {
    const std::size_t end = rest_.find_first_of(" \t\r\n/>=<\"'&");
    if (end == std::string_view::npos || end == 0) raise_invalid();
    const std::string_view name = rest_.substr(0, end);
    rest_.remove_prefix(end);
    return name;
  }

  void skip_blanks() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(blanks), rest_.size()));
  }

  void begin_element() {
    const std::string_view name = take_name();
    if (name[0] == '!' || open_.size() == deepest) raise_invalid();
    open_.push_back(name);
    if (!is_skipping() && !skipped_.empty() && without_prefix(name) == skipped_) {
      skipping_from_ = open_.size();
    }
    std::string tag = "<" + std::string(name);
    for (skip_blanks(); !is_at_end_of_tag(); skip_blanks()) tag += take_attribute();
    const bool is_empty = takes("/");
    if (!takes(">")) raise_invalid();
    if (!is_skipping()) plain_ += tag + (is_empty ? " />" : ">");
    if (is_empty) leave_element();
  }

  bool is_at_end_of_tag() const {
    if (rest_.empty()) raise_invalid();
    return rest_[0] == '/' || rest_[0] == '>';
  }

  std::string take_attribute() {
    const std::string_view name = take_name();
    skip_blanks();
    if (!takes("=")) raise_invalid();
    skip_blanks();
    const bool is_single = takes("'");
    if (!is_single && !takes("\"")) raise_invalid();
    const std::string_view raw = take_until(is_single ? "'" : "\"");
    if (raw.find('<') != std::string_view::npos) raise_invalid();
    return ' ' + std::string(name) + "=\"" + xml_text_mark +
           with_references(without_references(raw)) + '"';
  }

  void end_element() {
    const std::string_view name = take_name();
    skip_blanks();
    if (!takes(">") || open_.empty() || open_.back() != name) raise_invalid();
    if (!is_skipping()) plain_ += "</" + std::string(name) + '>';
    leave_element();
  }

  void leave_element() {
    if (skipping_from_ == open_.size()) skipping_from_ = 0;
    open_.pop_back();
  }

  std::string_view rest_;
  std::string_view skipped_;
  std::string plain_;
  std::string pending_;  // the text since the last tag
  std::vector<std::string_view> open_;
  std::size_t skipping_from_ = 0;  // depth of the element that is left out; 0 outside of one
};

}  // namespace

std::string plain_xml(std::string_view text, std::string_view skipped) {
  if (text.size() > longest) raise_invalid();
  return Writer(text, skipped).write();
}

}  // namespace Vrel::tool
