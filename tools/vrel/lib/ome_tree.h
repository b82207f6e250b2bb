// OME-XML text as the tree that the views of the library show.
#pragma once

#include <vrelio/json/value.h>

#include <string>
#include <string_view>
#include <vector>

namespace Vrel::tool {

/// Read a document of any prefix, with the element "ome:OME" at its top. Element names get the prefix
/// "ome:"; attributes that are numbers or truth values in the schema become such where they are spelled
/// so, all others are texts as they stand.
///
/// \param skipped  as for `plain_xml`.
/// \throws VrelError as `plain_xml`; "Invalid OME-XML!" (-4) for another document.
Json::Value read_ome_tree(std::string_view text, std::string_view skipped);

/// The child elements of this name, in order; none where the element has no such children.
/// \param name  with its prefix.
std::vector<const Json::Value*> children(const Json::Value& element, const std::string& name);

/// The first child element of this name, or null.
const Json::Value* child(const Json::Value& element, const std::string& name);

/// An attribute, or null.
const Json::Value* attribute(const Json::Value& element, const std::string& name);

/// A text attribute; empty where there is none.
std::string text_attribute(const Json::Value& element, const std::string& name);

/// A number attribute; `absent` where there is none.
double number_attribute(const Json::Value& element, const std::string& name, double absent);

/// The text that an element holds; empty where it holds none.
std::string text_of(const Json::Value* element);

}  // namespace Vrel::tool
