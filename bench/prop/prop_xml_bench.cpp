// Property trees as XML beside the library that parses and prints the same text. The peer makes no values
// when it reads, and it needs none when it writes: its elements are copied from those it has, since a
// program that writes by it has to build them.
#include <tinyxml.h>
#include <vrelio/prop/prop_xml.h>

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>

#include "support/peer_comparison.h"

namespace {

constexpr int value_count = 200000;

// --- The trees

VPropstruct make_point(int number) {
  VPropstruct fields;
  fields.emplace_back("x", VProp(0.065 * number));
  fields.emplace_back("y", VProp(17.25F));
  fields.emplace_back("index", VProp(number));
  fields.emplace_back("label", VProp(L"Point <" + std::to_wstring(number) + L">, \xB5m"));
  return fields;
}

// Each struct is a value, and so are its four fields.
VProp make_points() {
  VProparray<VProp> points;
  for (int i = 0; i < value_count / 5; ++i) points.emplace_back(make_point(i));
  return points;
}

VProp make_struct_array() {
  VProparray<VPropstruct> points;
  for (int i = 0; i < value_count / 4; ++i) points.push_back(make_point(i));
  return points;
}

VProp make_numbers() {
  VProparray<double> numbers;
  for (int i = 0; i < value_count; ++i) numbers.push_back(i / 7.0);
  return numbers;
}

VProp make_wide_struct() {
  VPropstruct fields;
  for (int i = 0; i < value_count; ++i) fields.emplace_back("f" + std::to_string(i), VProp(i));
  return fields;
}

// --- The candidates

std::string write_tree(const VProp& tree) {
  std::string text;
  vrel_export_xml(text, tree, vrel_xml_root);
  return text;
}

std::unique_ptr<VProp> read_tree(const std::string& text) {
  auto tree = std::make_unique<VProp>();
  vrel_import_xml(text, *tree, vrel_xml_root);
  return tree;
}

std::unique_ptr<TiXmlDocument> parse(const std::string& text) {
  auto document = std::make_unique<TiXmlDocument>();
  document->Parse(text.c_str(), nullptr, TIXML_ENCODING_UTF8);
  require(!document->Error(), "the peer refuses the document");
  return document;
}

std::string build_and_print(const TiXmlDocument& elements) {
  const TiXmlDocument document(elements);
  TiXmlPrinter printer;
  printer.SetStreamPrinting();
  document.Accept(&printer);
  return printer.Str();
}

// --- Comparing

void compare_reading(const std::string& name, const std::string& text) {
  compare((name + ", read").c_str(), text.size(), [&] { read_tree(text); }, [&] { parse(text); });
}

void compare_writing(const std::string& name, const std::string& text, const VProp& tree) {
  const auto document = parse(text);
  compare((name + ", write").c_str(), text.size(), [&] { write_tree(tree); },
          [&] { build_and_print(*document); });
}

void compare_tree(const std::string& name, const VProp& tree) {
  const std::string text = write_tree(tree);
  require(*read_tree(text) == tree, "what is written reads differently");
  compare_reading(name, text);
  compare_writing(name, text, tree);
}

}  // namespace

int main() {
  print_comparison_head();
  compare_tree("structs in a cell array", make_points());
  compare_tree("array of structs", make_struct_array());
  compare_tree("array of numbers", make_numbers());
  compare_tree("struct of many fields", make_wide_struct());
  return 0;
}
