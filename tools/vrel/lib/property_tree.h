// Property trees as people and programs are shown them, numbers with no more digits than tell them from
// their neighbours of the same type. docs/properties.md has the forms.
#pragma once

#include <vrelio/prop/prop.h>

#include <string>

namespace Vrel::tool {

/// One line per value, indented by its depth: name or position, kind, size where it is no single value,
/// and what it holds; long texts and arrays are cut. Nothing in it can harm a terminal.
std::string to_text(const VProp& value);

/// One JSON value on one line, with a line end: structs as objects, texts, numbers and bools as such, complex
/// numbers as pairs, rows as arrays, other arrays as an object of "size" and "values", nothing and what
/// is not finite as null.
std::string to_json(const VProp& value);

/// A single number, bool or text in full, with a line end, and the elements of an array of numbers or bools
/// with blanks between them; any other value as `to_text`.
std::string to_plain_text(const VProp& value);

}  // namespace Vrel::tool
