// Text of a file as a terminal may show it: nothing in it can move the cursor, change the colours
// or turn the reading direction.
#pragma once

#include <string>
#include <string_view>

namespace Vrel::tool {

/// The text in UTF-8 with every control character escaped as in C: `\n`, `\x1B`, `\u202E`. Broken
/// bytes appear as in `repair_utf8`.
std::string printable(std::string_view text);

/// `printable` in quotation marks, in which `"` and `\` are escaped too; a long text is cut, and
/// its whole size in bytes told behind it.
std::string quote(std::string_view text);

}  // namespace Vrel::tool
