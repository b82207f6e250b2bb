#include "lib/description_text.h"

#include <vrelio/foundation/data_type.h>

#include <algorithm>
#include <charconv>

#include "lib/printable_text.h"
#include "lib/unit_text.h"

namespace Vrel::tool {

namespace {

// The shortest text that reads back as the same number, whatever the locale.
std::string number_text(double number) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

void add_line(std::string& text, const char* indent, std::string key, const std::string& value) {
  key.resize(std::max<std::size_t>(key.size() + 1, 16), ' ');
  text += indent + key + value + '\n';
}

std::string size_text(std::size_t bytes) { return std::to_string(bytes) + " bytes"; }

void add_dictionary(std::string& text, const Dictionary& dictionary) {
  add_line(text, "  ", "dictionary", std::to_string(dictionary.size()));
  for (const auto& [key, value] : dictionary) {
    text += "    " + quote(key) + ", " + size_text(value.size()) + '\n';
  }
}

void add_tags(std::string& text, const Dictionary& tags) {
  add_line(text, "    ", "tags", std::to_string(tags.size()));
  for (const auto& [key, value] : tags) {
    text += "      " + quote(key) + " = " + quote(value) + '\n';
  }
}

std::string type_text(int id) {
  const std::string name = vrel_dt_get_name(id);
  return vrel_dt_from_name(name.c_str()) == id ? name : "id " + std::to_string(id);
}

std::string sizes_text(const StackHeader& header) {
  if (header.rank == 0) return "none, one sample";
  std::string text = std::to_string(header.sizes[0]);
  for (unsigned axis = 1; axis < header.rank; ++axis) {
    text += " x " + std::to_string(header.sizes[axis]);
  }
  return text;
}

std::string compression_text(const StackHeader& header) {
  const std::string level = ", level " + std::to_string(header.compression_level);
  if (header.compression_type == 0) return "none";
  if (header.compression_type == 1) return "zlib" + level;
  return "unknown type " + std::to_string(header.compression_type) + level;
}

std::string flush_text(const StackRecord& stack) {
  if (stack.flush_positions.empty()) return "none";
  return std::to_string(stack.flush_positions.size()) + ", one every " +
         std::to_string(stack.flush_block_size) + " bytes of samples";
}

std::string data_text(const StackHeader& header) {
  if (header.data_length == 0) return "none, reads as zeros";
  return size_text(header.data_length);
}

std::string positions_text(const StackRecord& stack) {
  return "stack " + std::to_string(stack.stack_position) + ", data " +
         std::to_string(stack.data_position) + ", end " + std::to_string(stack.stack_end) +
         ", next " + std::to_string(stack.header.next_stack);
}

std::string axis_text(const StackRecord& stack, unsigned axis) {
  std::string text =
      quote(stack.labels.at(axis)) + ", size " + std::to_string(stack.header.sizes[axis]) +
      ", length " + number_text(stack.header.lengths[axis]) + ", offset " +
      number_text(stack.header.offsets[axis]) + ", unit " + to_text(stack.footer.units[axis]);
  if (stack.footer.has_column_positions[axis] != 0) text += ", a position per column";
  if (stack.footer.has_column_labels[axis] != 0) text += ", a label per column";
  return text;
}

void add_stack(std::string& text, std::size_t index, const StackRecord& stack) {
  constexpr const char* indent = "    ";
  text += "\n  stack " + std::to_string(index) + ": " + quote(stack.name) + '\n';
  const auto add = [&](std::string key, const std::string& value) {
    add_line(text, indent, std::move(key), value);
  };
  add("description", quote(stack.description));
  add("format version", std::to_string(stack.header.format_version));
  add("type", type_text(stack.header.data_type));
  add("sizes", sizes_text(stack.header));
  for (unsigned axis = 0; axis < stack.header.rank; ++axis) {
    add("axis " + std::to_string(axis), axis_text(stack, axis));
  }
  add("sample unit", to_text(stack.footer.data_unit));
  add("compression", compression_text(stack.header));
  add("flush points", flush_text(stack));
  add("data", data_text(stack.header));
  add("positions", positions_text(stack));
  add("metadata", size_text(stack.metadata.size()));
  add_tags(text, stack.tags);
}

}  // namespace

std::string to_text(const std::string& path, const FileRecord& file) {
  constexpr const char* indent = "  ";
  std::string text = printable(path) + '\n';
  add_line(text, indent, "description", quote(file.description));
  add_line(text, indent, "format version", std::to_string(file.header.format_version));
  add_dictionary(text, file.dictionary);
  add_line(text, indent, "stacks", std::to_string(file.stacks.size()));
  for (std::size_t i = 0; i < file.stacks.size(); ++i) add_stack(text, i, file.stacks[i]);
  return text;
}

}  // namespace Vrel::tool
