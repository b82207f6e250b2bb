#include <vrelio/ome/remains.h>

#include <boost/make_shared.hpp>

namespace Ome {

Remains::Remains() : values_(boost::make_shared<Json::Array>()) {}

}  // namespace Ome
