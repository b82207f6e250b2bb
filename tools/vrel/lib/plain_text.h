// Small questions to texts, whatever the locale.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace Vrel::tool {

/// The text with small letters for the capitals of ASCII; all other bytes as they are.
inline std::string to_lower_case(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return lower;
}

inline bool ends_with(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

}  // namespace Vrel::tool
