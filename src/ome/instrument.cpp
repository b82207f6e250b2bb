#include <vrelio/ome/instrument.h>

#include <utility>

#include "ome/list_internal.h"

namespace Ome {

template <class Reference>
ManufacturerSpec<Reference>::ManufacturerSpec(Json::Value* value, Json::Value initial,
                                              unsigned int /*number*/, const Remains& remains)
    : Element(*value, std::move(initial), remains) {}

template <class Reference>
LightSource<Reference>::LightSource(Json::Value* value, Json::Value initial, unsigned int number,
                                    const Remains& remains)
    : ManufacturerSpec<Reference>(value, std::move(initial), number, remains) {}

template <class Reference>
Instrument<Reference>::Instrument(Json::Value* value, Json::Value initial, unsigned int /*number*/,
                                  const Remains& remains)
    : Element(*value, std::move(initial), remains) {}

template class ManufacturerSpec<Json::SignalingReference>;
template class LightSource<Json::SignalingReference>;
template class List<LightSource<Json::SignalingReference>>;
template class Instrument<Json::SignalingReference>;

}  // namespace Ome
