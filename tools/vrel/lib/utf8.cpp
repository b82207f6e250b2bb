#include "lib/utf8.h"

namespace Vrel::tool {

namespace {

// What may follow a lead byte. The range of the second byte shuts out overlong forms, surrogates
// and what lies above U+10FFFF.
struct Lead {
  unsigned char first, last;
  unsigned char second_first, second_last;
  std::size_t length;
};

constexpr Lead leads[] = {
    {0x00, 0x7F, 0x00, 0x00, 1}, {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
    {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4}};

unsigned char byte_at(std::string_view text, std::size_t i) {
  return static_cast<unsigned char>(text[i]);
}

bool is_continuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

const Lead* find_lead(unsigned char byte) {
  for (const Lead& lead : leads) {
    if (byte >= lead.first && byte <= lead.last) return &lead;
  }
  return nullptr;
}

bool has_tail(std::string_view text, const Lead& lead) {
  if (text.size() < lead.length) return false;
  if (lead.length == 1) return true;
  const unsigned char second = byte_at(text, 1);
  if (second < lead.second_first || second > lead.second_last) return false;
  for (std::size_t i = 2; i < lead.length; ++i) {
    if (!is_continuation(byte_at(text, i))) return false;
  }
  return true;
}

}  // namespace

std::size_t utf8_sequence_length(std::string_view text) {
  if (text.empty()) return 0;
  const Lead* const lead = find_lead(byte_at(text, 0));
  return lead != nullptr && has_tail(text, *lead) ? lead->length : 0;
}

char32_t decode_utf8(std::string_view sequence) {
  constexpr unsigned lead_bits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  char32_t code = byte_at(sequence, 0) & lead_bits[sequence.size()];
  for (std::size_t i = 1; i < sequence.size(); ++i) {
    code = (code << 6) | (byte_at(sequence, i) & 0x3Fu);
  }
  return code;
}

std::string repair_utf8(std::string_view text) {
  constexpr const char* replacement = "\xEF\xBF\xBD";
  std::string repaired;
  repaired.reserve(text.size());
  bool in_broken_run = false;
  while (!text.empty()) {
    const std::size_t length = utf8_sequence_length(text);
    if (length != 0) {
      repaired.append(text.substr(0, length));
    } else if (!in_broken_run) {
      repaired += replacement;
    }
    in_broken_run = length == 0;
    text.remove_prefix(in_broken_run ? 1 : length);
  }
  return repaired;
}

}  // namespace Vrel::tool
