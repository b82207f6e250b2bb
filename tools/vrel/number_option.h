// Options of the command line that take a number.
#pragma once

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>

namespace Vrel::tool {

/// Add an option that takes a number from 0 on, in decimal digits only: no sign, no blank, and a
/// leading zero does not make it octal.
/// \param number  takes the number; may be an optional one.
template <class Number>
CLI::Option* add_number(CLI::App& verb, const std::string& name, Number& number,
                        const std::string& help) {
  const auto parse = [name, &number](const std::string& text) {
    std::uint64_t value = 0;
    const char* const end = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end) {
      throw CLI::ValidationError(name, "'" + text + "' is not a number from 0 on");
    }
    number = value;
  };
  return verb.add_option_function<std::string>(name, parse, help)->type_name("N");
}

/// A check of sizes, whose parser would take a negative number round to a huge one.
inline std::string refuse_sign(const std::string& text) {
  return text.find('-') == std::string::npos ? "" : "'" + text + "' is no size";
}

/// What makes bytes of a size such as 512MiB; the help need not list the units.
inline CLI::Validator size_in_bytes() { return CLI::AsSizeValue(false).description(""); }

}  // namespace Vrel::tool
