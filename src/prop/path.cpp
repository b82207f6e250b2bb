#include <vrelio/prop/prop_struct.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "foundation/raise_internal.h"
#include "prop/path_internal.h"

namespace Vrel::detail {

namespace {

bool is_letter(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }
bool is_letter_or_digit(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; }

bool is_blank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Blanks, a sign and digits; 0 without digits, the limit for what is beyond it.
int leading_number(std::string_view text) {
  auto at = std::find_if_not(text.begin(), text.end(), is_blank);
  const bool is_negative = at != text.end() && *at == '-';
  if (at != text.end() && (*at == '-' || *at == '+')) ++at;
  constexpr std::int64_t highest = std::numeric_limits<int>::max();
  std::int64_t number = 0;
  for (; at != text.end() && is_digit(*at); ++at)
    number = std::min(highest, 10 * number + *at - '0');
  return static_cast<int>(is_negative ? -number : number);
}

unsigned int read_index(std::string_view text, const std::string& head) {
  const int index = leading_number(text);
  if (index < 0) {
    raise(id_plain, "Invalid index '%s' specified in segment '%s'!", std::string(text).c_str(),
          head.c_str());
  }
  return static_cast<unsigned int>(index);
}

// Intended: what is no number counts as 0, also between empty brackets;
// PropPathTest.AnIndexThatIsNoNumberIsZero.
VProparrayBase::index_list read_position(const std::string& head) {
  const char closing = head.front() == '(' ? ')' : '}';
  if (head.back() != closing) raise(id_plain, "Brackets not matched in '%s'!", head.c_str());
  VProparrayBase::index_list pos;
  std::string_view rest = std::string_view(head).substr(1, head.size() - 2);
  for (;;) {
    const std::size_t comma = rest.find(',');
    pos.push_back(read_index(rest.substr(0, comma), head));
    if (comma == std::string_view::npos) break;
    rest.remove_prefix(comma + 1);
  }
  if (pos.size() == 1) pos.insert(pos.begin(), 0);
  return pos;
}

bool is_bracket(char c) { return c == '(' || c == '{'; }

}  // namespace

Segment split_path(std::string_view path) {
  if (path.empty()) raise(id_plain, "Error parsing prop path: empty path!");
  const char first = path.front();
  const std::size_t end = path.find_first_of(".{(", is_bracket(first) ? 1 : 0);
  Segment segment;
  segment.head = path.substr(0, end);
  if (segment.head.empty()) {
    raise(id_plain, "Error parsing prop path: '%s' starts with an empty segment!",
          std::string(path).c_str());
  }
  segment.tail = end == std::string_view::npos ? std::string_view() : path.substr(end);
  if (!segment.tail.empty() && segment.tail.front() == '.') segment.tail.remove_prefix(1);
  if (is_bracket(first)) {
    segment.kind = first == '{' ? Segment_kind::cell : Segment_kind::struct_element;
    segment.pos = read_position(segment.head);
    return segment;
  }
  if (!vrel_prop_is_valid_name(segment.head)) {
    raise(id_plain, "Error parsing prop path: '%s' is not a valid name!", segment.head.c_str());
  }
  segment.kind = Segment_kind::field;
  return segment;
}

}  // namespace Vrel::detail

using namespace Vrel::detail;

bool vrel_prop_is_valid_name(const std::string& name) {
  if (name.empty() || !(is_letter(name.front()) || name.front() == '_')) return false;
  return std::all_of(name.begin() + 1, name.end(),
                     [](char c) { return is_letter_or_digit(c) || c == '_' || c == '-'; });
}
