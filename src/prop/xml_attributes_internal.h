// The attributes of property elements.
#pragma once

#include <vrelio/prop/prop_array.h>

#include <cstdint>
#include <optional>

#include "prop/xml_dom_internal.h"

namespace Vrel::detail {

/// \throws Xml_error if there is one that is no integer, here and below.
std::optional<int> find_integer(Xml_view element, const char* name);
std::optional<std::uint64_t> find_bits(Xml_view element, const char* name);
/// 0, 1, "false" or "true"; false if there is none.
bool read_flag(Xml_view element, const char* name);
/// Numbers with blanks between them; (1, 1) if there is none.
VProparrayBase::index_list read_size(Xml_view element);

}  // namespace Vrel::detail
