// The document as XML, and back again.
#include <gtest/gtest.h>
#include <vrelio/json/write_xml.h>
#include <vrelio/json/xml_reader.h>

#include <stdexcept>
#include <utility>

#include "ome/ome_views.h"

namespace {

using Json::Value;

std::string xml_of(const Value& tree) {
  std::ostringstream stream;
  Json::write_xml(tree, stream);
  return stream.str();
}

// What stands between the tags of the root element.
std::string children_of(const Value& tree) {
  const std::string text = xml_of(tree);
  const std::size_t begin = text.find("ome.xsd\">") + 9;
  return text.substr(begin, text.rfind("</ome:OME>") - begin);
}

// --- Attributes and children in the order of their keys

TEST(OmeDocumentXmlTest, WithoutImagesAndInstrumentsThereIsOneElement) {
  Value tree;
  Document view(&tree);
  view.UUID = "urn:uuid:12345678-9abc-def0-1234-56789abcdef0";
  view.Creator = "tests";
  EXPECT_EQ(xml_of(tree),
            R"(<?xml version="1.0" encoding="UTF-8"?><ome:OME Creator="tests" )"
            R"(UUID="urn:uuid:12345678-9abc-def0-1234-56789abcdef0" )"
            R"(xmlns:ome="http://www.openmicroscopy.org/Schemas/OME/2015-01" )"
            R"(xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" )"
            R"(xsi:schemaLocation="http://www.openmicroscopy.org/Schemas/OME/2015-01 )"
            R"(http://www.openmicroscopy.org/Schemas/OME/2015-01/ome.xsd"></ome:OME>)");
}

TEST(OmeDocumentXmlTest, AnImageHasItsAttributesAndChildrenInOrder) {
  Value tree;
  Document view(&tree);
  const auto image = view.Image.append();
  image->Name = "name";
  image->Description = "a & b";
  image->AcquisitionDate = "2015-03-29T10:20:30+02:00";
  image->TimeIncrementUnit = "s";
  image->TimeIncrement = 0.25;
  image->PhysicalSizeZUnit = "nm";
  image->PhysicalSizeZ = 1.0 / 3;
  image->PhysicalSizeYUnit = "\u00b5m";
  image->PhysicalSizeY = 2;
  image->SizeT = 5;
  image->SizeC = 4;
  image->SizeZ = 3;
  image->SizeY = 2;
  image->SizeX = 1;
  image->BigEndian = false;
  image->Interleaved = true;
  image->SignificantBits = 12;
  image->Type = "uint16";
  image->DimensionOrder = "XYZCT";
  EXPECT_EQ(children_of(tree),
            R"(<ome:Image ID="Image:1" Name="name">)"
            R"(<ome:AcquisitionDate>2015-03-29T10:20:30+02:00</ome:AcquisitionDate>)"
            R"(<ome:Description>a &amp; b</ome:Description>)"
            R"(<ome:Pixels BigEndian="false" DimensionOrder="XYZCT" ID="Pixels:1" )"
            R"(Interleaved="true" PhysicalSizeX="1.0" PhysicalSizeXUnit="pixel" )"
            "PhysicalSizeY=\"2.0\" PhysicalSizeYUnit=\"\u00b5m\" "
            R"(PhysicalSizeZ="0.3333333333" PhysicalSizeZUnit="nm" SignificantBits="12" )"
            R"(SizeC="4" SizeT="5" SizeX="1" SizeY="2" SizeZ="3" TimeIncrement="0.25" )"
            R"(TimeIncrementUnit="s" Type="uint16"><ome:MetadataOnly/></ome:Pixels></ome:Image>)");
}

void set_all(Channel& channel) {
  channel.SamplesPerPixel = 1;
  channel.PockelCellSetting = -1;
  channel.PinholeSizeUnit = "nm";
  channel.PinholeSize = 2.5;
  channel.Name = "red";
  channel.NDFilter = 0.5;
  channel.IlluminationType = "Other";
  channel.Fluor = "dye";
  channel.ExcitationWavelengthUnit = "nm";
  channel.ExcitationWavelength = 488;
  channel.EmissionWavelengthUnit = "nm";
  channel.EmissionWavelength = 520;
  channel.ContrastMethod = "Fluorescence";
  channel.Color = 255;
  channel.AcquisitionMode = "STED";
  channel.LightPath = Json::Object{{"x", 1}};
  channel.FilterSetRef = Json::Object{{"ID", "FilterSet:1"}};
  channel.DetectorSettings = Json::Object{};
  const auto light = channel.LightSourceSettings.append();
  light->WavelengthUnit = "nm";
  light->Wavelength = 488;
  light->ID = "LightSource:1";
  light->Attenuation = 1;
}

TEST(OmeDocumentXmlTest, AChannelHasItsAttributesAndChildrenInOrder) {
  Value tree;
  Document view(&tree);
  set_all(*view.Image.append()->Channel.append());
  const std::string text = children_of(tree);
  const std::string channel =
      R"(<ome:Channel AcquisitionMode="STED" Color="255" ContrastMethod="Fluorescence" )"
      R"(EmissionWavelength="520.0" EmissionWavelengthUnit="nm" ExcitationWavelength="488.0" )"
      R"(ExcitationWavelengthUnit="nm" Fluor="dye" ID="Channel:1" IlluminationType="Other" )"
      R"(NDFilter="0.5" Name="red" PinholeSize="2.5" PinholeSizeUnit="nm" )"
      R"(PockelCellSetting="-1" SamplesPerPixel="1"><ome:DetectorSettings/>)"
      R"(<ome:FilterSetRef ID="FilterSet:1"/><ome:LightPath x="1"/>)"
      R"(<ome:LightSourceSettings Attenuation="1.0" ID="LightSource:1" Wavelength="488.0" )"
      R"(WavelengthUnit="nm"/></ome:Channel><ome:MetadataOnly/>)";
  EXPECT_NE(text.find(channel), std::string::npos) << text;
}

void set_all(Plane& plane) {
  plane.TheZ = 0;
  plane.TheT = 1;
  plane.TheC = 2;
  plane.PositionZUnit = "nm";
  plane.PositionZ = -3;
  plane.PositionYUnit = "nm";
  plane.PositionY = 2.5;
  plane.PositionXUnit = "nm";
  plane.PositionX = 1e20;
  plane.ExposureTimeUnit = "ms";
  plane.ExposureTime = 20;
  plane.DeltaTUnit = "s";
  plane.DeltaT = 0.0;
}

TEST(OmeDocumentXmlTest, PlanesHaveTheirAttributesInOrderAndStandBehindEachOther) {
  Value tree;
  Document view(&tree);
  const auto image = view.Image.append();
  set_all(*image->Plane.append());
  image->Plane.append()->TheZ = 1;
  const std::string text = children_of(tree);
  const std::string planes =
      R"(<ome:MetadataOnly/><ome:Plane DeltaT="0.0" DeltaTUnit="s" ExposureTime="20.0" )"
      R"(ExposureTimeUnit="ms" PositionX="100000000000000000000.0" PositionXUnit="nm" )"
      R"(PositionY="2.5" PositionYUnit="nm" PositionZ="-3" PositionZUnit="nm" )"
      R"(TheC="2" TheT="1" TheZ="0"/><ome:Plane TheZ="1"/></ome:Pixels>)";
  EXPECT_NE(text.find(planes), std::string::npos) << text;
}

void set_all(LightSource& light) {
  light.SerialNumber = "4";
  light.PowerUnit = "mW";
  light.Power = 5;
  light.Model = "model";
  light.Manufacturer = "maker";
  light.LotNumber = "3";
  light.ID = "LightSource:1";
  light.LightEmittingDiode = Json::Object{};
  light.Laser = Json::Object{};
  light.GenericExcitationSource = Json::Object{};
  light.Filament = Json::Object{};
  light.Arc = Json::Object{};
}

TEST(OmeDocumentXmlTest, AnInstrumentStandsBehindTheImagesWithItsChildrenInOrder) {
  Value tree;
  Document view(&tree);
  const auto instrument = view.Instrument.append();
  instrument->ID = "Instrument:1";
  for (auto* const part : {&instrument->Objective, &instrument->Microscope, &instrument->FilterSet,
                           &instrument->Filter, &instrument->Dichroic, &instrument->Detector})
    *part = Json::Object{};
  set_all(*instrument->LightSource.append());
  view.Image.append();
  const std::string text = children_of(tree);
  const std::string end =
      R"(</ome:Image><ome:Instrument ID="Instrument:1"><ome:Detector/><ome:Dichroic/><ome:Filter/>)"
      R"(<ome:FilterSet/><ome:LightSource ID="LightSource:1" LotNumber="3" Manufacturer="maker" )"
      R"(Model="model" Power="5.0" PowerUnit="mW" SerialNumber="4"><ome:Arc/><ome:Filament/>)"
      R"(<ome:GenericExcitationSource/><ome:Laser/><ome:LightEmittingDiode/></ome:LightSource>)"
      R"(<ome:Microscope/><ome:Objective/></ome:Instrument>)";
  EXPECT_NE(text.find(end), std::string::npos) << text;
}

// --- What is left out

TEST(OmeDocumentXmlTest, AnEmptyDescriptionIsNoElementButAnEmptyNameIsAnAttribute) {
  Value tree;
  Document view(&tree);
  const auto image = view.Image.append();
  image->Description = "";
  image->Name = "";
  image->Pixels = Value();
  EXPECT_EQ(children_of(tree), R"(<ome:Image ID="Image:1" Name=""><ome:Pixels><ome:MetadataOnly/>)"
                               "</ome:Pixels></ome:Image>");
}

TEST(OmeDocumentXmlTest, WithoutAnyChildAnElementThatCanHaveSomeHasBothTags) {
  Value tree;
  Document view(&tree);
  const auto image = view.Image.append();
  image->MetadataOnly = Value();
  const std::string text = children_of(tree);
  EXPECT_NE(text.find(R"(PhysicalSizeZUnit="pixel"></ome:Pixels>)"), std::string::npos) << text;
}

TEST(OmeDocumentXmlTest, WhatWasInTheTreeWithoutIdGetsNone) {
  Value tree;
  tree["ome:OME"][""]["ome:Image"] = Json::Object{{"Name", "old"}};
  Document view(&tree);
  view.Image.append();
  const std::string text = children_of(tree);
  EXPECT_EQ(text.find(R"(<ome:Image Name="old"><ome:Pixels PhysicalSizeX=)"), 0U) << text;
  EXPECT_NE(text.find(R"(<ome:Image ID="Image:2"><ome:Pixels ID="Pixels:2")"), std::string::npos);
}

// --- What no view makes

TEST(OmeDocumentXmlTest, AnArrayThatIsWrittenPastTheViewsIsRefused) {
  Value attribute;
  attribute["ome:OME"]["Creator"] = Json::Array();
  EXPECT_BAD_CAST(Document view(&attribute));
  Value content;
  content["ome:OME"][""] = Json::Array();
  EXPECT_BAD_CAST(Document view(&content));
  for (const auto& [tree, message] :
       {std::pair(attribute, "No xml attribute"), std::pair(content, "No xml content")}) {
    try {
      xml_of(tree);
      ADD_FAILURE() << message;
    } catch (const std::invalid_argument& error) {
      EXPECT_STREQ(error.what(), message);
    }
  }
}

TEST(OmeDocumentXmlTest, OnlyAMapOrNullIsADocument) {
  for (const Value& value : {Value(1), Value("text"), Value(Json::Array())}) {
    Value tree = value;
    EXPECT_BAD_CAST(Document view(&tree));
    EXPECT_EQ(tree, value);
  }
}

// --- Reading back

Value read_back(const Value& tree) {
  std::istringstream text(xml_of(tree));
  Value read;
  EXPECT_TRUE(Json::XmlReader(read).read(text));
  return read;
}

TEST(OmeDocumentXmlTest, ADocumentThatWasReadBackIsViewedAsTheSame) {
  Value tree;
  Document view(&tree);
  view.Creator = "tests";
  const auto image = view.Image.append();
  image->SizeX = 7;
  image->Interleaved = true;
  image->Description = "some text";
  set_all(*image->Channel.append());
  set_all(*image->Plane.append());
  set_all(*image->Plane.append());
  const auto instrument = view.Instrument.append();
  instrument->ID = "Instrument:1";
  Value read = read_back(tree);
  const Document again(&read);
  ASSERT_EQ(again.Image.size(), 1U);
  EXPECT_EQ(again.Image[0]->Plane.size(), 2U);
  image->Channel[0]->DetectorSettings = Value();  // an empty element reads as null
  EXPECT_EQ(text_of(read), text_of(tree));
}

TEST(OmeDocumentXmlTest, AnEmptyElementReadsBackAsNullAndASingleOneAsNoArray) {
  Value tree;
  Document view(&tree);
  view.Image.append();
  Value read = read_back(tree);
  Value& image = read["ome:OME"][""]["ome:Image"];
  EXPECT_EQ(image.kind(), Json::kind_map);
  EXPECT_TRUE(image[""]["ome:Pixels"][""]["ome:MetadataOnly"].is_null());
  const Document again(&read);
  EXPECT_EQ(read["ome:OME"][""]["ome:Image"].kind(), Json::kind_array);
  EXPECT_EQ(again.Image[0]->MetadataOnly.value(), Value(Json::Object()));
}

}  // namespace
