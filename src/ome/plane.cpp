#include <vrelio/ome/plane.h>

#include <utility>

namespace Ome {

template <class Reference>
Plane<Reference>::Plane(Json::Value* value, Json::Value initial, unsigned int /*number*/,
                        const Remains& remains)
    : Element(*value, std::move(initial), remains) {}

template class Plane<Json::SignalingReference>;

}  // namespace Ome
