#include "container/stack_metadata_internal.h"

#include <vrelio/container/stack_metadata.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_xml.h>

#include <exception>

#include "foundation/raise_internal.h"
#include "stack/stack_errors_internal.h"

namespace Vrel::detail {

namespace {

constexpr std::uint32_t first_version_with_position = 3;

constexpr const char* axes_key = "global_pos.axes";
constexpr const char* offset_key = "global_pos.offset";
constexpr const char* projection_key = "global_pos.projection";

template <class T>
const VProparray<T>& get_array(VProp& tree, const char* key) {
  const VProp& node = tree.getp(key, true);
  return node.get<VProparray<T>>();
}

// Errors of the library are read without a report, which would pass for that of the error that follows.
template <class Work, class Raise>
void add_words(Work work, Raise raise_with) {
  try {
    work();
  } catch (const VrelError& error) {
    raise_with(error.get_msg());
  } catch (const std::exception& error) {
    raise_with(error.what());
  }
}

[[noreturn]] void raise_not_exported(const char* text) {
  raise(id_plain, "Invalid meta information! Could not export to xml.\n%s", text);
}

[[noreturn]] void raise_invalid(const char* text) {
  raise(id_plain, "Invalid metadata found!\n%s", text);
}

VProp make_tree(const VStackPosition& position) {
  VProp tree;
  tree[axes_key] = position.axes;
  tree[offset_key] = position.offset;
  tree[projection_key] = position.projection;
  return tree;
}

VStackPosition read_position(VProp& tree, unsigned rank) {
  VStackPosition position;
  position.axes = get_array<VPropstring>(tree, axes_key);
  position.offset = get_array<double>(tree, offset_key);
  position.projection = get_array<double>(tree, projection_key);
  if (!position.fits(rank)) raise_invalid_stack_position();
  return position;
}

}  // namespace

std::string export_metadata(const VStackPosition& position) {
  std::string text;
  add_words([&] { vrel_export_xml(text, make_tree(position), vrel_xml_root); }, raise_not_exported);
  return text;
}

std::optional<VStackPosition> import_metadata(const std::string& text, std::uint32_t format_version,
                                              unsigned rank) {
  std::optional<VStackPosition> position;
  add_words([&] { position = read_stack_metadata(text, format_version, rank); }, raise_invalid);
  return position;
}

}  // namespace Vrel::detail

namespace Vrel {

std::optional<VStackPosition> read_stack_metadata(const std::string& text,
                                                  std::uint32_t format_version, unsigned rank) {
  if (text.empty()) return std::nullopt;
  VProp tree;
  vrel_import_xml(text, tree, vrel_xml_any);
  if (format_version < detail::first_version_with_position) return std::nullopt;
  return detail::read_position(tree, rank);
}

}  // namespace Vrel
