// What carries files, stacks and properties to clients of other languages.
#include <vrelio/vrelio.h>

#include <memory>
#include <string>
#include <utility>

#include "exports.h"
#include "scratch_file.h"

namespace {

std::unique_ptr<Remote::Stack> plane() {
  return std::unique_ptr<Remote::Stack>(Remote::get_stack(Remote::type_uint16, {64, 48}));
}

bool use_Remote_get_stack() {
  const std::unique_ptr<Remote::Stack> stack = plane();
  return stack->number_of_elements() == 64 * 48 && stack->type() == Remote::type_uint16;
}

// Whoever has the id finds the elements, here or in another process.
bool use_Remote_Stack() {
  const std::unique_ptr<Remote::Stack> stack = plane();
  stack->set_label(1, "Y");
  const Vrel::SharedMemory block(stack->share());
  return block.size() == 64 * 48 * 2 && stack->labels().back() == "Y";
}

bool use_Remote_StackObject() {
  const auto held =
      boost::shared_ptr<VStackInterface>(new VStackImp(Ome::type_float, {8, 8}, Ome::order_XYZTC));
  Remote::StackObject object(held);
  object.set_name("cells");
  return held->get_name() == "cells" && object.meta_data().at("Name") == "cells";
}

bool use_Remote_File() {
  const ScratchFile scratch("exports_Remote_File.vbf");
  Remote::File file(scratch.narrow_name(), Remote::File::mode_create);
  const boost::shared_ptr<Remote::Stack> stack(plane().release());
  file.write(stack, true);
  return file.number_of_stacks() == 1 && file.read(0)->sizes() == stack->sizes();
}

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
  return {{"Remote::get_stack", use_Remote_get_stack},
          {"Remote::Stack", use_Remote_Stack},
          {"Remote::StackObject", use_Remote_StackObject},
          {"Remote::File", use_Remote_File},
          {"Json::get_value", use_get_value},
          {"Json::set_value", use_set_value},
          {"Json::get_parameters", use_get_parameters},
          {"Json::find_property", use_find_property},
          {"Json::merge", use_merge}};
}
