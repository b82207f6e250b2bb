#include "container/stack_metadata_internal.h"

#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_xml.h>

#include <exception>

#include "foundation/raise_internal.h"

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
template <class Work>
void add_words(const char* format, Work work) {
  const auto raise_with = [&](const char* text) { throw VrelError()(format, text)(id_plain); };
  try {
    work();
  } catch (const VrelError& error) {
    raise_with(error.get_msg());
  } catch (const std::exception& error) {
    raise_with(error.what());
  }
}

}  // namespace

std::string export_metadata(const VStackPosition& position) {
  std::string text;
  add_words("Invalid meta information! Could not export to xml.\n%s", [&] {
    VProp tree;
    tree[axes_key] = position.axes;
    tree[offset_key] = position.offset;
    tree[projection_key] = position.projection;
    vrel_export_xml(text, tree, vrel_xml_root);
  });
  return text;
}

void import_metadata(const std::string& text, std::uint32_t format_version,
                     VStackInfoInterface& info) {
  add_words("Invalid metadata found!\n%s", [&] {
    VProp tree;
    vrel_import_xml(text, tree, vrel_xml_any);
    if (format_version < first_version_with_position) return;
    VStackPosition position;
    position.create(&info, 0);
    position.axes = get_array<VPropstring>(tree, axes_key);
    position.offset = get_array<double>(tree, offset_key);
    position.projection = get_array<double>(tree, projection_key);
    info.set_stack_position(position);
  });
}

}  // namespace Vrel::detail
