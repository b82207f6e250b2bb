// Read as the library reads it when it opens a file (docs/format.md, "Versions").
#include <vrelio/foundation/error.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_xml.h>
#include <vrelio/stack/position.h>

#include <exception>
#include <new>

#include "lib/verify_texts.h"

namespace Vrel::tool {

namespace {

constexpr std::uint32_t first_version_with_position = 3;

template <class T>
const VProparray<T>& get_array(VProp& tree, const char* key) {
  const VProp& node = tree.getp(key, true);
  return node.get<VProparray<T>>();
}

bool has_valid_position(VProp& tree, unsigned rank) {
  VStackPosition position;
  position.axes = get_array<VPropstring>(tree, "global_pos.axes");
  position.offset = get_array<double>(tree, "global_pos.offset");
  position.projection = get_array<double>(tree, "global_pos.projection");
  return position.fits(rank);
}

}  // namespace

std::optional<std::string> find_metadata_fault(const std::string& text,
                                               std::uint32_t format_version, unsigned rank) {
  if (text.empty()) return std::nullopt;
  try {
    VProp tree;
    vrel_import_xml(text, tree, vrel_xml_any);
    if (format_version < first_version_with_position || has_valid_position(tree, rank)) {
      return std::nullopt;
    }
    return "Invalid global stack position!";
  } catch (const VrelError& error) {
    return error.get_msg();
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    return error.what();
  }
}

}  // namespace Vrel::tool
