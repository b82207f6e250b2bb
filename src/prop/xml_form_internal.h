// The words of property documents; docs/property_xml.md.
#pragma once

namespace Vrel::detail {

constexpr int xml_format_mask = 0xFFFF;
constexpr int xml_version = 1;

constexpr const char* xml_root_name = "root";
constexpr const char* xml_item_name = "item";
constexpr const char* xml_data_name = "LVData";
constexpr const char* xml_data_version_name = "Version";
constexpr const char* xml_data_version = "8.2.1";

constexpr const char* xml_version_attribute = "vprop_version";
constexpr const char* xml_old_version_attribute = "xml_tb_version";

constexpr unsigned int xml_texts_bit = 1;  // of `userbits`: the elements of a cell array are texts

}  // namespace Vrel::detail
