#include <vrelio/vrelio.h>

#include <fstream>
#include <iostream>

int main() {
  VProp settings;
  settings["laser.power"] = 0.5;
  settings["laser.lines"] = VProparray<int>{488, 561};
  settings["scan.axes{0}.label"] = "galvo";
  settings["scan.axes{1}.label"] = "piezo";  // the cell array grows

  const VProp kept(settings);  // a copy, which costs nothing
  settings["laser.power"] = 0.8;
  std::cout << kept["laser.power"].get<double>() << " before, "
            << settings["laser.power"].get<double>() << " now\n";

  std::string xml;
  vrel_export_xml(xml, settings, vrel_xml_root);
  std::ofstream("settings.xml") << xml;
}
