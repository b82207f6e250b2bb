// A property tree of a million leaves beside the same tree of a JSON library and beside the elements of its
// XML in the library that parses them: building, copying, changing one leaf after copying, destroying,
// writing, reading, and memory.
#include <tinyxml.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>
#include <vrelio/prop/prop_xml.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "support/peer_comparison.h"

namespace {

constexpr unsigned int width = 100;
constexpr std::size_t leaves = std::size_t{width} * width * width;
constexpr int changes = 100000;

std::string name(unsigned int number) { return "f" + std::to_string(number); }

// Structs in cell arrays in a struct.
std::unique_ptr<VProp> build() {
  auto tree = std::make_unique<VProp>();
  for (unsigned int i = 0; i < width; ++i) {
    VProp& cells = (*tree)[name(i)];
    for (unsigned int j = 0; j < width; ++j) {
      VPropstruct& fields = cells(j).get<VPropstruct>();
      for (unsigned int k = 0; k < width; ++k) fields.emplace_back(name(k), VProp(0.5 * k));
    }
  }
  return tree;
}

std::unique_ptr<nlohmann::json> build_json() {
  auto tree = std::make_unique<nlohmann::json>();
  for (unsigned int i = 0; i < width; ++i) {
    nlohmann::json& items = (*tree)[name(i)];
    for (unsigned int j = 0; j < width; ++j) {
      nlohmann::json fields;
      for (unsigned int k = 0; k < width; ++k) fields[name(k)] = 0.5 * k;
      items.push_back(std::move(fields));
    }
  }
  return tree;
}

// --- The elements that the tree is written as

TiXmlElement* add_element(TiXmlNode& parent, const std::string& element_name, unsigned int idx,
                          const char* type, const std::string& size) {
  auto* const element = new TiXmlElement(element_name.c_str());  // `parent` owns it
  parent.LinkEndChild(element);
  element->SetAttribute("idx", static_cast<int>(idx));
  if (type == std::string("cell")) element->SetAttribute("userbits", 0);
  element->SetAttribute("type", type);
  element->SetAttribute("size", size.c_str());
  return element;
}

void add_fields(TiXmlElement& fields) {
  for (unsigned int k = 0; k < width; ++k) {
    TiXmlElement* const field = add_element(fields, name(k), 1, "double", "1 1");
    char text[32];
    std::snprintf(text, sizeof text, "%.20g", 0.5 * k);
    field->LinkEndChild(new TiXmlText(text));
  }
}

std::unique_ptr<TiXmlDocument> build_elements() {
  auto document = std::make_unique<TiXmlDocument>();
  TiXmlElement* const root = add_element(*document, "root", 1, "struct", "1 1");
  root->SetAttribute("vprop_version", 1);
  const std::string row = "1 " + std::to_string(width);
  for (unsigned int i = 0; i < width; ++i) {
    TiXmlElement* const cells = add_element(*root, name(i), 1, "cell", row);
    for (unsigned int j = 0; j < width; ++j) {
      add_fields(*add_element(*cells, "item", j + 1, "struct", "1 1"));
    }
  }
  return document;
}

TiXmlElement* nth_child(TiXmlElement* parent, unsigned int n) {
  TiXmlElement* child = parent->FirstChildElement();
  while (n-- > 0) child = child->NextSiblingElement();
  return child;
}

void change_element(TiXmlDocument& document) {
  TiXmlElement* const cells = document.RootElement()->FirstChildElement("f50");
  TiXmlElement* const field = nth_child(cells, 50)->FirstChildElement("f50");
  field->FirstChild()->SetValue("1");
}

// --- Writing and reading

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

std::string print(const TiXmlDocument& document) {
  TiXmlPrinter printer;
  printer.SetStreamPrinting();
  document.Accept(&printer);
  return printer.Str();
}

std::unique_ptr<TiXmlDocument> parse(const std::string& text) {
  auto document = std::make_unique<TiXmlDocument>();
  document->Parse(text.c_str(), nullptr, TIXML_ENCODING_UTF8);
  require(!document->Error(), "the peer refuses the document");
  return document;
}

std::unique_ptr<nlohmann::json> parse_json(const std::string& text) {
  return std::make_unique<nlohmann::json>(nlohmann::json::parse(text));
}

// --- Comparing

void require_same_trees() {
  const auto ours = build();
  const auto json = build_json();
  const VProp& read = *ours;
  require(read["f7{9}.f11"].get<double>() == (*json)["f7"][9]["f11"].get<double>(),
          "the trees differ");
  VProp copy(read);
  copy["f7{9}.f11"] = -1.0;
  require(read["f7{9}.f11"].get<double>() == 5.5, "a copy is not its own");
  const std::string text = write_tree(read);
  require(*read_tree(text) == read, "what is written reads differently");
  require(print(*build_elements()) == text, "the elements are not those that are written");
  std::printf("%.1f MB as XML, %.1f MB as JSON\n", static_cast<double>(text.size()) / 1e6,
              static_cast<double>(json->dump().size()) / 1e6);
}

using Works = std::array<std::function<void()>, 3>;
using Figures = std::array<double, 3>;

void print_row(const char* what, const char* unit, const Figures& figures) {
  const auto [ours, json, xml] = figures;
  std::printf("%-32s %12.4g %12.4g %12.4g %-5s %10.2f %10.2f\n", what, ours, json, xml, unit,
              json / ours, xml / ours);
  std::fflush(stdout);
}

// By turns, each time in a process of its own.
void compare_times(const char* what, const Works& works) {
  Figures best{1e9, 1e9, 1e9};
  for (int round = 0; round < comparison_rounds; ++round) {
    for (std::size_t i = 0; i < works.size(); ++i) {
      best[i] = std::min(best[i], seconds_apart(works[i]) * 1e3);
    }
  }
  print_row(what, "ms", best);
}

double best_of_many(int count, const std::function<void()>& work) {
  double best = 1e9;
  for (int round = 0; round < comparison_rounds; ++round) {
    best = std::min(best, seconds([&] {
                      for (int i = 0; i < count; ++i) work();
                    }));
  }
  return best / count * 1e9;
}

// In one process, where the pages of the trees are there already.
void compare_short_times(const char* what, const std::array<int, 3>& counts, const Works& works) {
  Figures figures{};
  for (std::size_t i = 0; i < works.size(); ++i) figures[i] = best_of_many(counts[i], works[i]);
  print_row(what, "ns", figures);
}

void compare_building() {
  std::unique_ptr<VProp> ours;
  std::unique_ptr<nlohmann::json> json;
  std::unique_ptr<TiXmlDocument> xml;
  compare_times("build", {[&] { ours = build(); }, [&] { json = build_json(); },
                          [&] { xml = build_elements(); }});
}

struct Trees {
  std::unique_ptr<VProp> ours = build();
  std::unique_ptr<nlohmann::json> json = build_json();
  std::unique_ptr<TiXmlDocument> xml = build_elements();
};

void compare_copies(const Trees& trees) {
  compare_short_times("copy the tree and drop it", {1000000, 1, 1},
                      {[&] { const VProp copy(std::as_const(*trees.ours)); },
                       [&] { const nlohmann::json copy(*trees.json); },
                       [&] { const TiXmlDocument copy(*trees.xml); }});
  compare_short_times("change one leaf of a fresh copy", {1000, 1, 1},
                      {[&] {
                         VProp copy(std::as_const(*trees.ours));
                         copy["f50{50}.f50"] = 1.0;
                       },
                       [&] {
                         nlohmann::json copy(*trees.json);
                         copy["f50"][50]["f50"] = 1.0;
                       },
                       [&] {
                         TiXmlDocument copy(*trees.xml);
                         change_element(copy);
                       }});
}

void compare_changes(const Trees& trees) {
  compare_short_times(
      "change one leaf", {changes, changes, changes},
      {[&] { (*trees.ours)["f50{50}.f50"] = 1.0; }, [&] { (*trees.json)["f50"][50]["f50"] = 1.0; },
       [&] { change_element(*trees.xml); }});
}

void compare_texts(const Trees& trees) {
  const std::string xml = write_tree(*trees.ours);
  const std::string json = trees.json->dump();
  compare_times("write", {[&] { write_tree(*trees.ours); }, [&] { trees.json->dump(); },
                          [&] { print(*trees.xml); }});
  compare_times("build from nothing and write",
                {[&] { write_tree(*build()); }, [&] { build_json()->dump(); },
                 [&] { print(*build_elements()); }});
  std::unique_ptr<VProp> ours;
  std::unique_ptr<nlohmann::json> json_tree;
  std::unique_ptr<TiXmlDocument> document;
  compare_times("read", {[&] { ours = read_tree(xml); }, [&] { json_tree = parse_json(json); },
                         [&] { document = parse(xml); }});
}

void compare_with_trees() {
  Trees trees;
  compare_copies(trees);
  compare_changes(trees);
  compare_times("destroy", {[&] { trees.ours.reset(); }, [&] { trees.json.reset(); },
                            [&] { trees.xml.reset(); }});
  compare_texts(trees);
}

}  // namespace

int main() {
  require_same_trees();
  std::printf("%-32s %12s %12s %12s %16s %10s\n", "a tree of 1,000,000 leaves", "ours", "JSON",
              "XML", "JSON ratio", "XML ratio");
  compare_building();
  compare_with_trees();
  print_row("bytes per leaf", "",
            {bytes_per_node(build, leaves), bytes_per_node(build_json, leaves),
             bytes_per_node(build_elements, leaves)});
}
