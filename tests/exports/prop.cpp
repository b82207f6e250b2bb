// Property trees.
#include <vrelio/vrelio.h>

#include <string>
#include <utility>
#include <vector>

#include "exports.h"

namespace {

// Copies share what they hold until one of them is written.
bool use_VProp() {
  VProp tree;
  tree["scan.axes{1}.label"] = "stage";
  VProp copy(tree);
  copy["scan.axes{1}.label"] = "piezo";
  return tree["scan.axes{1}.label"].get<VPropstring>() == "stage" && tree != copy;
}

// The shape of an array, whatever its elements are.
bool use_VProparrayBase() {
  VProparray<double> matrix;
  VProparrayBase& shape = matrix;
  shape.set_size({3, 2}, VProparrayBase::set_mode_resize);
  matrix(2, 1) = 0.5;
  return shape.count() == 6 && shape.get_rank() == 2 && shape.get_idx({2, 1}) == 5 &&
         matrix[5] == 0.5;
}

bool use_VPropstruct() {
  VPropstruct fields;
  fields["size"] = 512;
  fields["step"] = 0.5;
  return fields[0].first == "size" && fields.erase("size") && !fields.has_key("size") &&
         fields.getp("step").get<double>() == 0.5;
}

bool use_VPropPos() {
  VPropPos position;
  position.decend("axes");
  position.decend(1U);
  const unsigned int index = position.get_cur_idx();
  position.ascend();
  return index == 1 && position.get_cur_key() == "axes";
}

// A visitor is destroyed as what it is.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

struct Paths : VPropVisitor {
  using VPropVisitor::visit;
  int visit(const VProp&) override {
    text += get_cur_path(no_index) + ';';
    return visit_go;
  }
  std::string text;
};

#pragma GCC diagnostic pop

bool use_VPropVisitor() {
  VProp tree;
  tree["scan.axes{0}"] = "X";
  Paths paths;
  return paths.process(tree) && paths.text == ";scan;scan.axes;scan.axes{0};";
}

bool use_vrel_prop_is_valid_name() {
  return vrel_prop_is_valid_name("axis_1") && !vrel_prop_is_valid_name("1st axis");
}

bool use_vrel_prop_is_valid_path() {
  return vrel_prop_is_valid_path("scan.axes{1}.label") && !vrel_prop_is_valid_path("scan.axes{1");
}

bool use_vrel_prop_reserve() {
  std::vector<VProp> values(1, VProp(0.5));
  std::vector<std::pair<std::string, VProp>> fields(1, {"step", VProp(0.5)});
  vrel_prop_reserve(values, 100);
  vrel_prop_reserve(fields, 100);
  return values.capacity() >= 100 && values[0] == VProp(0.5) && fields.capacity() >= 100 &&
         fields[0].second == VProp(0.5);
}

bool use_vrel_prop_cast() {
  int whole = 0;
  vrel_prop_cast(VProp(2.75), &whole, vrel_dt_from_name("int32"));
  return whole == 2;
}

bool use_vrel_val2string() {
  return vrel_val2string(VProp(2.75)) == "2.75" &&
         vrel_val2string(VProparray<int>{1, 2, 3}) == "1 2 3";
}

bool use_vrel_string2val() {
  std::string text = "2.75 mm";
  return vrel_string2val(text, vrel_dt_from_name("double")) == VProp(2.75);
}

bool use_vrel_export_xml() {
  VProp tree;
  tree["step"] = 0.5;
  std::string text;
  vrel_export_xml(text, tree, vrel_xml_root);
  return text.find("<step") != std::string::npos && text.find("0.5") != std::string::npos;
}

bool use_vrel_import_xml() {
  VProp tree;
  tree["scan.axes{1}.label"] = "piezo";
  std::string text;
  vrel_export_xml(text, tree, vrel_xml_data);
  VProp read;
  vrel_import_xml(text, read, vrel_xml_any);
  return read == tree;
}

}  // namespace

std::vector<Export> prop_exports() {
  return {{"VProp", use_VProp},
          {"VProparrayBase", use_VProparrayBase},
          {"VPropstruct", use_VPropstruct},
          {"VPropPos", use_VPropPos},
          {"VPropVisitor", use_VPropVisitor},
          {"vrel_prop_is_valid_name", use_vrel_prop_is_valid_name},
          {"vrel_prop_is_valid_path", use_vrel_prop_is_valid_path},
          {"vrel_prop_reserve", use_vrel_prop_reserve},
          {"vrel_prop_cast", use_vrel_prop_cast},
          {"vrel_val2string", use_vrel_val2string},
          {"vrel_string2val", use_vrel_string2val},
          {"vrel_export_xml", use_vrel_export_xml},
          {"vrel_import_xml", use_vrel_import_xml}};
}
