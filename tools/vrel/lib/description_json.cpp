#include "lib/description_json.h"

#include <vrelio/foundation/data_type.h>

#include <nlohmann/json.hpp>

#include "lib/unit_text.h"
#include "lib/utf8.h"

namespace Vrel::tool {

namespace {

using nlohmann::json;

json to_json(const Dictionary& dictionary) {
  json object = json::object();
  for (const auto& [key, value] : dictionary) object[repair_utf8(key)] = repair_utf8(value);
  return object;
}

json to_json(const UnitRecord& unit) {
  json exponents = json::array();
  for (const ExponentRecord& exponent : unit.exponents) {
    exponents.push_back(json::array({exponent.numerator, exponent.denominator}));
  }
  return {{"factor", unit.factor}, {"exponents", std::move(exponents)}, {"text", to_text(unit)}};
}

json to_json(const std::string& text) { return repair_utf8(text); }

json to_json(const std::vector<std::string>& texts) {
  json array = json::array();
  for (const std::string& text : texts) array.push_back(repair_utf8(text));
  return array;
}

json to_json(const std::vector<double>& numbers) { return numbers; }

// The entries of an array per dimension that have a meaning.
template <class Array>
json first_of(const Array& array, unsigned rank) {
  json entries = json::array();
  for (unsigned axis = 0; axis < rank; ++axis) entries.push_back(array[axis]);
  return entries;
}

json units(const StackRecord& stack) {
  json entries = json::array();
  for (unsigned axis = 0; axis < stack.header.rank; ++axis) {
    entries.push_back(to_json(stack.footer.units[axis]));
  }
  return entries;
}

// By axis number, for the dimensions that store columns; one of size 0 stores an empty array.
template <class Columns>
json columns(const StackRecord& stack, const std::array<std::uint32_t, max_rank>& stored,
             const std::vector<Columns>& entries) {
  json object = json::object();
  for (unsigned axis = 0; axis < stack.header.rank; ++axis) {
    if (stored[axis] != 0) object[std::to_string(axis)] = to_json(entries.at(axis));
  }
  return object;
}

json positions(const StackRecord& stack) {
  return {{"stack", stack.stack_position},
          {"data", stack.data_position},
          {"data_length", stack.header.data_length},
          {"end", stack.stack_end},
          {"next", stack.header.next_stack}};
}

json to_json(const StackRecord& stack) {
  const StackHeader& header = stack.header;
  const StackFooter& footer = stack.footer;
  return {{"name", to_json(stack.name)},
          {"description", to_json(stack.description)},
          {"format_version", header.format_version},
          {"data_type", vrel_dt_get_name(header.data_type)},
          {"sizes", first_of(header.sizes, header.rank)},
          {"lengths", first_of(header.lengths, header.rank)},
          {"offsets", first_of(header.offsets, header.rank)},
          {"labels", to_json(stack.labels)},
          {"units", units(stack)},
          {"data_unit", to_json(footer.data_unit)},
          {"column_positions", columns(stack, footer.has_column_positions, stack.column_positions)},
          {"column_labels", columns(stack, footer.has_column_labels, stack.column_labels)},
          {"compression", {{"type", header.compression_type}, {"level", header.compression_level}}},
          {"flush", {{"block_size", stack.flush_block_size}, {"positions", stack.flush_positions}}},
          {"positions", positions(stack)},
          {"metadata", to_json(stack.metadata)},
          {"tags", to_json(stack.tags)}};
}

json to_json(const FileRecord& file) {
  json stacks = json::array();
  for (const StackRecord& stack : file.stacks) stacks.push_back(to_json(stack));
  return {{"format_version", file.header.format_version},
          {"description", to_json(file.description)},
          {"dictionary", to_json(file.dictionary)},
          {"stacks", std::move(stacks)}};
}

}  // namespace

std::string to_json(const Description& description) {
  json object = to_json(description.file);
  if (description.error) object["error"] = repair_utf8(description.error->what());
  return object.dump() + '\n';
}

}  // namespace Vrel::tool
