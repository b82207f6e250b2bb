#include <vrelio/ome/id.h>
#include <vrelio/ome/image.h>

#include <utility>

#include "ome/list_internal.h"

namespace Ome {

template <class Reference>
Image<Reference>::Image(Json::Value* value, Json::Value initial, unsigned int number,
                        const Remains& remains)
    : Element(*value, std::move(initial), remains),
      ID(Element, "ID", Id("Image", number)),
      PixelsID(Pixels, "ID", Id("Pixels", number)) {}

template class List<Channel<Json::SignalingReference>>;
template class List<Plane<Json::SignalingReference>>;
template class Image<Json::SignalingReference>;

}  // namespace Ome
