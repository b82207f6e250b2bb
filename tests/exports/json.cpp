// Values from JSON and XML text, and XML text from values.
#include <vrelio/vrelio.h>

#include <sstream>
#include <string>

#include "exports.h"

namespace {

// A text comes in slices, which are cut anywhere.
bool use_Reader() {
  Json::Reader reader;
  const std::string first = R"({"planes": 1)";
  const std::string second = R"(2, "step": 0.5})";
  const char* begin = first.data();
  const bool is_closed_early = reader.read(begin, begin + first.size());
  begin = second.data();
  const bool is_closed = reader.read(begin, begin + second.size());
  return !is_closed_early && is_closed &&
         reader.object() == Json::Object{{"planes", 12}, {"step", 0.5}};
}

bool use_XmlReader() {
  Json::Value root;
  Json::XmlReader reader(root);
  std::istringstream text(R"(<?xml version="1.0"?><axis label="X"><size>512</size></axis>)");
  return reader.read(text) && root["axis"]["label"] == "X" && root["axis"][""]["size"] == 512;
}

bool use_write_xml() {
  Json::Value root;
  root["axis"]["label"] = "X";
  root["axis"][""]["size"] = 512;
  std::ostringstream text;
  Json::write_xml(root, text);
  return text.str() == R"(<?xml version="1.0" encoding="UTF-8"?>)"
                       R"(<axis label="X"><size>512</size></axis>)";
}

}  // namespace

std::vector<Export> json_exports() {
  return {{"Json::Reader", use_Reader},
          {"Json::XmlReader", use_XmlReader},
          {"Json::write_xml", use_write_xml}};
}
