#include "lib/region_text.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "lib/axis_letters.h"
#include "lib/plain_text.h"
#include "lib/printable_text.h"

namespace Vrel::tool {

namespace {

std::string_view trim(std::string_view text) {
  constexpr const char* blanks = " \t";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// Digits only: no sign, no base, nothing behind.
std::optional<u64> read_number(std::string_view text) {
  std::uint64_t number = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, number);
  if (text.empty() || result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return number;
}

u64 parse_index(std::string_view text) {
  const std::optional<u64> index = read_number(text);
  if (!index) throw RegionError(quote(text) + " is no index from 0 on");
  return *index;
}

std::optional<u64> parse_bound(std::string_view text) {
  if (text.empty()) return std::nullopt;
  return parse_index(text);
}

void parse_range(std::string_view text, AxisChoice& choice) {
  const std::size_t colon = text.find(':');
  choice.is_single = colon == std::string_view::npos;
  if (choice.is_single) {
    choice.first = parse_index(text);
    return;
  }
  choice.first = parse_bound(trim(text.substr(0, colon)));
  choice.end = parse_bound(trim(text.substr(colon + 1)));
  if (choice.end && choice.first.value_or(0) >= *choice.end) {
    throw RegionError(quote(text) + " holds no index, the end does not count");
  }
}

AxisChoice parse_axis(std::string_view text) {
  const std::size_t sign = text.rfind('=');
  AxisChoice choice;
  if (sign != std::string_view::npos) choice.axis = trim(text.substr(0, sign));
  if (choice.axis.empty()) throw RegionError(quote(text) + " is not of the form AXIS=FIRST:END");
  parse_range(trim(text.substr(sign + 1)), choice);
  return choice;
}

using Matches = std::vector<std::size_t>;

template <class Test>
Matches axes_where(std::size_t rank, Test test) {
  Matches axes;
  for (std::size_t axis = 0; axis < rank; ++axis) {
    if (test(axis)) axes.push_back(axis);
  }
  return axes;
}

Matches axes_with_letter(const std::vector<std::string>& labels, const std::string& name) {
  const std::vector<char> letters = axis_letters(labels);
  return axes_where(labels.size(), [&](std::size_t axis) {
    return name.size() == 1 && to_lower_case({&letters[axis], 1}) == to_lower_case(name);
  });
}

Matches axes_with_number(std::size_t rank, const std::string& name) {
  const std::optional<u64> number = read_number(name);
  return axes_where(rank, [&](std::size_t axis) { return number == u64{axis}; });
}

Matches find_axes(const std::vector<std::string>& labels, const std::string& name) {
  const std::size_t rank = labels.size();
  Matches axes = axes_where(rank, [&](std::size_t axis) { return labels[axis] == name; });
  if (axes.empty()) {
    const std::string lower = to_lower_case(name);
    axes = axes_where(rank, [&](std::size_t axis) { return to_lower_case(labels[axis]) == lower; });
  }
  if (axes.empty()) axes = axes_with_letter(labels, name);
  if (axes.empty()) axes = axes_with_number(rank, name);
  return axes;
}

std::string list_of_axes(const std::vector<std::string>& labels) {
  if (labels.empty()) return "the stack has none";
  std::string text = "the stack has";
  for (std::size_t axis = 0; axis < labels.size(); ++axis) {
    text += (axis == 0 ? " " : ", ") + std::to_string(axis) + ' ' + quote(labels[axis]);
  }
  return text;
}

std::size_t find_axis(const std::vector<std::string>& labels, const std::string& name) {
  const Matches axes = find_axes(labels, name);
  if (axes.size() == 1) return axes.front();
  const std::string fault = axes.empty() ? " is no axis: " : " is more than one axis: ";
  throw RegionError(quote(name) + fault + list_of_axes(labels));
}

// A single index has its end from here on.
AxisRange choose_range(const AxisChoice& choice, u64 size) {
  AxisRange range{choice.first.value_or(0), choice.end.value_or(size), choice.is_single};
  if (choice.is_single && range.first < size) range.end = range.first + 1;
  if (range.first >= range.end || range.end > size) {
    throw RegionError("The axis " + quote(choice.axis) +
                      " has the indices from 0 up to, not including, " + std::to_string(size));
  }
  return range;
}

}  // namespace

std::vector<AxisChoice> parse_region(std::string_view text) {
  std::vector<AxisChoice> choices;
  for (;;) {
    const std::size_t comma = text.find(',');
    choices.push_back(parse_axis(trim(text.substr(0, comma))));
    if (comma == std::string_view::npos) return choices;
    text.remove_prefix(comma + 1);
  }
}

Region choose_region(const std::vector<AxisChoice>& choices, const std::vector<std::string>& labels,
                     const std::vector<std::uint32_t>& sizes) {
  Region region;
  for (const std::uint32_t size : sizes) region.push_back({0, size, false});
  std::vector<bool> is_named(sizes.size());
  for (const AxisChoice& choice : choices) {
    const std::size_t axis = find_axis(labels, choice.axis);
    if (is_named[axis]) throw RegionError("The axis " + quote(choice.axis) + " is named twice");
    is_named[axis] = true;
    region[axis] = choose_range(choice, sizes[axis]);
  }
  return region;
}

}  // namespace Vrel::tool
