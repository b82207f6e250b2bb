// The door to Qt: texts that it can tell.
#pragma once

#include <string>

namespace Ome {

// Whether a text is an ISO 8601 date and time, in any time zone or none.
bool is_date_time(const std::string& text);

// Whether a text is a UUID other than the null UUID, with or without braces, and nothing else.
bool is_uuid(const std::string& text);

// Now as an ISO 8601 date and time, local with its offset from universal time.
std::string current_date_time();

}  // namespace Ome
