// Exchanges the content of a tree below nodes that others refer to.
#pragma once

#include <vrelio/json/value.h>

namespace Ome {

// Bring `node`, and what is below it, to `value`, so that no node is destroyed and the entries of maps stay
// where they are; an entry that `value` lacks becomes null, a map that becomes null one of null entries.
// What has no place any more goes into `remains`. Nothing recurses.
// Gives whether anything has changed.
bool exchange_below(Json::Value& node, Json::Value value, Json::Array& remains);

}  // namespace Ome
