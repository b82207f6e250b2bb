#include "lib/imagej_description.h"

#include <charconv>
#include <cmath>
#include <map>
#include <string_view>
#include <system_error>

#include "lib/ome_units.h"

namespace Vrel::tool {

namespace {

using Entries = std::map<std::string, std::string>;

Entries read_entries(std::string_view text) {
  Entries entries;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    const std::size_t equals = line.find('=');
    if (equals != std::string_view::npos) {
      entries.emplace(line.substr(0, equals), line.substr(equals + 1));
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return entries;
}

std::string text_of(const Entries& entries, const char* key) {
  const auto found = entries.find(key);
  return found == entries.end() ? "" : found->second;
}

template <class Number>
std::optional<Number> number_of(const Entries& entries, const char* key) {
  const std::string text = text_of(entries, key);
  Number number{};
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return number;
}

struct SpellingRow {
  std::string_view spelling;
  const char* name;
};

constexpr const char* micrometre = "\xC2\xB5m";
constexpr const char* microsecond = "\xC2\xB5s";

constexpr SpellingRow spellings[] = {{"micron", micrometre},
                                     {"microns", micrometre},
                                     {"micrometer", micrometre},
                                     {"micrometre", micrometre},
                                     {"um", micrometre},

                                     {"\\u00B5m", micrometre},
                                     {"\\u00b5m", micrometre},
                                     {"\\u03BCm", micrometre},
                                     {"\\u03bcm", micrometre},
                                     {"\xB5m", micrometre},
                                     {"inch", "in"},
                                     {"inches", "in"},
                                     {"meter", "m"},
                                     {"nanometer", "nm"},
                                     {"millimeter", "mm"},
                                     {"centimeter", "cm"},
                                     {"sec", "s"},
                                     {"second", "s"},
                                     {"seconds", "s"},
                                     {"msec", "ms"},
                                     {"usec", microsecond},
                                     {"us", microsecond},
                                     {"\\u00B5s", microsecond},
                                     {"hour", "h"},
                                     {"hours", "h"},
                                     {"minute", "min"},
                                     {"minutes", "min"},
                                     {"\\u00C5", "\xE2\x84\xAB"},

                                     {"angstrom", "\xE2\x84\xAB"}};

bool is_of_base(const si::value& unit, std::size_t dimension) {
  return unit.exponents()[dimension] != si::fraction(0, 1);
}

// Empty for what is no unit of this base dimension.
std::string unit_name(const std::string& text, std::size_t dimension) {
  std::string name = ome_spelling(text);
  for (const SpellingRow& row : spellings) {
    if (row.spelling == text) name = row.name;
  }
  const std::optional<si::value> unit = ome_unit(name);
  return unit && is_of_base(*unit, dimension) ? name : "";
}

std::string length_unit(const std::string& text) { return unit_name(text, 0); }

double positive(std::optional<double> number) {
  return number && std::isfinite(*number) && *number > 0.0 ? *number : 0.0;
}

// Without any count nobody knows what the images differ in.
bool counts_fit(const ImageJDescription& description) {
  u64 product = 1;
  for (const u64 count : {description.channels, description.slices, description.frames}) {
    if (count == 0 || count > description.images / product) return false;
    product *= count;
  }
  return product == 1 || product == description.images;
}

}  // namespace

std::optional<ImageJDescription> read_imagej_description(const std::string& text) {
  if (text.rfind("ImageJ=", 0) != 0) return std::nullopt;
  const Entries entries = read_entries(text);
  ImageJDescription description;
  description.channels = number_of<u64>(entries, "channels").value_or(1);
  description.slices = number_of<u64>(entries, "slices").value_or(1);
  description.frames = number_of<u64>(entries, "frames").value_or(1);
  description.images = number_of<u64>(entries, "images").value_or(1);
  if (!counts_fit(description)) return std::nullopt;
  description.unit = length_unit(text_of(entries, "unit"));
  const std::string z_unit = text_of(entries, "zunit");
  description.z_unit = z_unit.empty() ? description.unit : length_unit(z_unit);
  description.spacing = std::abs(number_of<double>(entries, "spacing").value_or(0.0));
  description.spacing = positive(description.spacing);
  description.interval = positive(number_of<double>(entries, "finterval"));
  const std::string time_unit = text_of(entries, "tunit");
  description.time_unit = time_unit.empty() ? "s" : unit_name(time_unit, 2);
  return description;
}

}  // namespace Vrel::tool
