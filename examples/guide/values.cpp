#include <vrelio/vrelio.h>

#include <fstream>
#include <iostream>
#include <iterator>

int main() {
  std::ifstream file("settings.xml");
  const std::string xml{std::istreambuf_iterator<char>(file), {}};
  VProp settings;
  vrel_import_xml(xml, settings, vrel_xml_any);
  std::cout << Json::get_value(settings) << '\n';

  Json::Value change;
  change["laser"]["power"] = 0.25;
  Json::set_value(change, settings);  // what it does not name stays

  const auto [power, rest] = Json::find_property(settings, "laser/power");
  std::cout << Json::get_value(*power) << '\n';
}
