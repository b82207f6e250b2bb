#include "foundation/unicode_internal.h"

namespace Vrel::detail {

namespace {

constexpr char32_t last_code_point = 0x10FFFF;

bool is_high_surrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool is_low_surrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
bool is_surrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; }

// The form of a UTF-8 sequence, told by its first byte: how many bytes follow, which bits of the first
// byte count, and the bounds of the second, which keep out surrogates, what is beyond Unicode, and what
// a shorter sequence could say. (The Unicode Standard 15, table 3-7.)
struct Sequence {
  unsigned char first_of_lead, last_of_lead;
  unsigned char following;
  unsigned char lead_bits;
  unsigned char first_of_second, last_of_second;
};

// clang-format off
constexpr Sequence sequences[] = {
    {0xC2, 0xDF, 1, 0x1F, 0x80, 0xBF},
    {0xE0, 0xE0, 2, 0x0F, 0xA0, 0xBF},
    {0xE1, 0xEC, 2, 0x0F, 0x80, 0xBF},
    {0xED, 0xED, 2, 0x0F, 0x80, 0x9F},
    {0xEE, 0xEF, 2, 0x0F, 0x80, 0xBF},
    {0xF0, 0xF0, 3, 0x07, 0x90, 0xBF},
    {0xF1, 0xF3, 3, 0x07, 0x80, 0xBF},
    {0xF4, 0xF4, 3, 0x07, 0x80, 0x8F},
};
// clang-format on

const Sequence* find_sequence(unsigned char lead) {
  for (const Sequence& sequence : sequences) {
    if (lead >= sequence.first_of_lead && lead <= sequence.last_of_lead) return &sequence;
  }
  return nullptr;
}

unsigned char front(std::string_view text) { return static_cast<unsigned char>(text.front()); }

// Takes the bytes that follow the lead, as far as they are such bytes.
std::optional<char32_t> take_following(std::string_view& text, const Sequence& sequence,
                                       char32_t code) {
  unsigned char first = sequence.first_of_second;
  unsigned char last = sequence.last_of_second;
  for (int count = 0; count < sequence.following; ++count) {
    if (text.empty() || front(text) < first || front(text) > last) return std::nullopt;
    code = (code << 6) | (front(text) & 0x3FU);
    text.remove_prefix(1);
    first = 0x80;
    last = 0xBF;
  }
  return code;
}

}  // namespace

std::optional<char32_t> take_code_point(std::wstring_view& text) {
  const auto unit = static_cast<char32_t>(text.front());
  text.remove_prefix(1);
  if (!is_surrogate(unit)) return unit <= last_code_point ? std::optional(unit) : std::nullopt;
  if (!is_high_surrogate(unit) || text.empty()) return std::nullopt;
  const auto low = static_cast<char32_t>(text.front());
  if (!is_low_surrogate(low)) return std::nullopt;
  text.remove_prefix(1);
  return (((unit & 0x3FF) << 10) | (low & 0x3FF)) + 0x10000;
}

std::optional<char32_t> take_code_point(std::string_view& text) {
  const unsigned char lead = front(text);
  text.remove_prefix(1);
  if (lead < 0x80) return lead;
  const Sequence* const sequence = find_sequence(lead);
  if (sequence == nullptr) return std::nullopt;
  return take_following(text, *sequence, lead & sequence->lead_bits);
}

void append_utf8(std::string& out, char32_t code) {
  const auto byte = [&out](char32_t bits) {
    out += static_cast<char>(static_cast<unsigned char>(bits));
  };
  const auto continuation = [&](int shift) { byte(0x80 | ((code >> shift) & 0x3F)); };
  if (code < 0x80) {
    byte(code);
  } else if (code < 0x800) {
    byte(0xC0 | (code >> 6));
    continuation(0);
  } else if (code < 0x10000) {
    byte(0xE0 | (code >> 12));
    continuation(6);
    continuation(0);
  } else {
    byte(0xF0 | (code >> 18));
    continuation(12);
    continuation(6);
    continuation(0);
  }
}

void append_utf16(std::wstring& out, char32_t code) {
  if (code < 0x10000) {
    out += static_cast<wchar_t>(code);
  } else {
    out += static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10));
    out += static_cast<wchar_t>(0xDC00 + (code & 0x3FF));
  }
}

std::string utf8_of(std::wstring_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    if (const auto code = take_code_point(text)) append_utf8(out, *code);
  }
  return out;
}

std::wstring utf16_of(std::string_view text) {
  std::wstring out;
  out.reserve(text.size());
  while (!text.empty()) {
    if (const auto code = take_code_point(text)) append_utf16(out, *code);
  }
  return out;
}

}  // namespace Vrel::detail
