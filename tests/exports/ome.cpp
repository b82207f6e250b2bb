// What an OME document is made of.
#include <vrelio/vrelio.h>

#include "exports.h"

namespace {

bool use_Id() {
  const Json::Value third = Ome::Id("Channel", 3);
  const Json::Value none = Ome::Id("Channel", 0);
  return third == "Channel:3" && none.is_null();
}

bool use_get_type() { return Ome::get_type(vrel_dt_from_name("uint16")) == Ome::type_uint16; }

}  // namespace

std::vector<Export> ome_exports() { return {{"Ome::Id", use_Id}, {"Ome::get_type", use_get_type}}; }
