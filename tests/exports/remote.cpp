// What carries files, stacks and properties to clients of other languages.
#include <vrelio/vrelio.h>

#include <string>
#include <utility>

#include "exports.h"

namespace {

VProp scan() {
  VProp tree;
  tree["planes"] = 12;
  tree["axes{0}.label"] = "X";
  return tree;
}

bool use_get_value() {
  const Json::Value axis = Json::Object{{"label", "X"}};
  return Json::get_value(scan()) == Json::Object{{"planes", 12}, {"axes", Json::Array{axis}}};
}

// A property keeps its kind.
bool use_set_value() {
  VProp planes(12.5);
  const bool is_another = Json::set_value(13, planes);
  return is_another && planes == VProp(13.0);
}

bool use_get_parameters() {
  return Json::get_parameters(scan()).at("planes") == 12 && Json::get_parameters(VProp(12)).empty();
}

bool use_find_property() {
  VProp tree = scan();
  const std::pair<VProp*, std::string> label = Json::find_property(tree, "axes/0/label");
  return label.first == &tree["axes{0}.label"] && label.second.empty() &&
         Json::find_property(tree, "no/such/label").first == nullptr;
}

bool use_merge() {
  const Json::Object standard = {{"planes", 1}, {"step", 0.5}};
  Json::Object chosen = {{"planes", 12}};
  Json::merge(standard, chosen);
  return chosen == Json::Object{{"planes", 12}, {"step", 0.5}};
}

}  // namespace

std::vector<Export> remote_exports() {
  return {{"Json::get_value", use_get_value},
          {"Json::set_value", use_set_value},
          {"Json::get_parameters", use_get_parameters},
          {"Json::find_property", use_find_property},
          {"Json::merge", use_merge}};
}
