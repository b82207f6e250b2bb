#include "lib/axis_letters.h"

#include <algorithm>

#include "lib/plain_text.h"

namespace Vrel::tool {

namespace {

struct Word {
  std::string_view text;
  char letter;
};

constexpr Word words[] = {
    {"x", 'X'},        {"y", 'Y'},        {"z", 'Z'},      {"c", 'C'},          {"t", 'T'},
    {"channel", 'C'},  {"channels", 'C'}, {"lambda", 'C'}, {"wavelength", 'C'}, {"time", 'T'},
    {"\xCE\x9B", 'C'}, {"\xCE\xBB", 'C'}};  // large and small lambda

std::string_view last_word(std::string_view label) {
  const std::size_t separator = label.find_last_of(" _-.");
  return separator == std::string_view::npos ? label : label.substr(separator + 1);
}

bool is_taken(const std::vector<char>& letters, char letter) {
  return std::find(letters.begin(), letters.end(), letter) != letters.end();
}

void take(std::vector<char>& letters, std::size_t axis, char letter) {
  if (letters[axis] == no_letter && !is_taken(letters, letter)) letters[axis] = letter;
}

}  // namespace

char letter_of(std::string_view label) {
  if (label.empty()) return no_letter;
  const char last = label.back();
  if (last >= 'X' && last <= 'Z') return last;
  const std::string word = to_lower_case(last_word(label));
  for (const Word& row : words) {
    if (row.text == word) return row.letter;
  }
  return no_letter;
}

std::vector<char> axis_letters(const std::vector<std::string>& labels) {
  const std::size_t rank = labels.size();
  std::vector<char> letters(rank, no_letter);
  for (std::size_t axis = 0; axis < rank; ++axis) {
    const char letter = letter_of(labels[axis]);
    if (letter != no_letter) take(letters, axis, letter);
  }
  if (rank > 0) take(letters, 0, 'X');
  if (rank > 1) take(letters, 1, 'Y');
  for (std::size_t axis = 0; axis < rank; ++axis) {
    for (const char letter : {'Z', 'T', 'C'}) take(letters, axis, letter);
  }
  return letters;
}

}  // namespace Vrel::tool
