#include <vrelio/ome/channel.h>
#include <vrelio/ome/id.h>

#include <utility>

#include "ome/list_internal.h"

namespace Ome {

template <class Reference>
LightSourceSettings<Reference>::LightSourceSettings(Json::Value* value, Json::Value initial,
                                                    unsigned int /*number*/, const Remains& remains)
    : Element(*value, std::move(initial), remains) {}

template <class Reference>
Channel<Reference>::Channel(Json::Value* value, Json::Value initial, unsigned int number,
                            const Remains& remains)
    : Element(*value, std::move(initial), remains), ID(Element, "ID", Id("Channel", number)) {}

template class LightSourceSettings<Json::SignalingReference>;
template class List<LightSourceSettings<Json::SignalingReference>>;
template class Channel<Json::SignalingReference>;

}  // namespace Ome
