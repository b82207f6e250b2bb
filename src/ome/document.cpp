#include <vrelio/ome/document.h>

#include <utility>

#include "ome/list_internal.h"

namespace Ome {

template <class Reference>
Document<Reference>::Document(Json::Value* value, Json::Value initial, unsigned int /*number*/,
                              const Remains& remains)
    : OME((*value)["ome:OME"], std::move(initial), remains) {}

template class List<Instrument<Json::SignalingReference>>;
template class List<Image<Json::SignalingReference>>;
template class Document<Json::SignalingReference>;

}  // namespace Ome
