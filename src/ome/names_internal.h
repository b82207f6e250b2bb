// The names that the OME schema (release 2015-01) has for units and enumerations. Each function gives the
// position of a name among its kind, counted from 0, and -1 for any other text.
#pragma once

#include <string>

namespace Ome {

int find_length_unit(const std::string& text);
int find_time_unit(const std::string& text);
int find_power_unit(const std::string& text);
int find_illumination_type(const std::string& text);
int find_acquisition_mode(const std::string& text);
int find_contrast_method(const std::string& text);
int find_dimension_order(const std::string& text);
int find_pixel_type(const std::string& text);

}  // namespace Ome
