// Every view against its table: the types of its fields, their keys in their order, and the defaults.
#include <gtest/gtest.h>
#include <vrelio/json/write_xml.h>

#include <functional>
#include <utility>

#include "ome/ome_views.h"

namespace {

namespace Field = Ome::Field;
using Json::Value;
using String = Field::String<Signaling>;
using Bool = Field::Bool<Signaling>;
using Int = Field::Int<Signaling>;
using NonNegativeInt = Field::NonNegativeInt<Signaling>;
using PositiveInt = Field::PositiveInt<Signaling>;
using Float = Field::Float<Signaling>;
using PositiveFloat = Field::PositiveFloat<Signaling>;
using PercentFraction = Field::PercentFraction<Signaling>;
using UnitsLength = Field::UnitsLength<Signaling>;
using UnitsTime = Field::UnitsTime<Signaling>;
using UnitsPower = Field::UnitsPower<Signaling>;
using Object = Field::Object<Signaling>;

// Holds the members of a view, in their order, against the keys of its tree.
class Table {
 public:
  explicit Table(const Value& tree) : tree_(tree) {}

  // The place of the next rows.
  Table& in(std::vector<std::string> place) {
    place_ = std::move(place);
    return *this;
  }

  // The type of a field is given, so that no other compiles.
  template <class Type>
  Table& row(const Type& field, const char* key) {
    std::vector<std::string> path = place_;
    path.emplace_back(key);
    EXPECT_EQ(&field.value(), &node_at(tree_, path)) << key;
    return follows(&field, key);
  }

  // A list is there and comes next; its key shows when it grows.
  template <class T>
  Table& list(const Ome::List<T>& list, const char* key) {
    EXPECT_TRUE(list.empty()) << key;
    return follows(&list, key);
  }

 private:
  Table& follows(const void* member, const char* key) {
    EXPECT_TRUE(last_ == nullptr || std::less<const void*>()(last_, member)) << key;
    last_ = member;
    return *this;
  }

  const Value& tree_;
  std::vector<std::string> place_;
  const void* last_ = nullptr;
};

TEST(OmePlaneTest, HasItsFields) {
  Value tree;
  const Plane view(&tree);
  Table(tree)
      .row<NonNegativeInt>(view.TheZ, "TheZ")
      .row<NonNegativeInt>(view.TheT, "TheT")
      .row<NonNegativeInt>(view.TheC, "TheC")
      .row<Float>(view.DeltaT, "DeltaT")
      .row<UnitsTime>(view.DeltaTUnit, "DeltaTUnit")
      .row<PositiveFloat>(view.ExposureTime, "ExposureTime")
      .row<UnitsTime>(view.ExposureTimeUnit, "ExposureTimeUnit")
      .row<Float>(view.PositionX, "PositionX")
      .row<UnitsLength>(view.PositionXUnit, "PositionXUnit")
      .row<Float>(view.PositionY, "PositionY")
      .row<UnitsLength>(view.PositionYUnit, "PositionYUnit")
      .row<Float>(view.PositionZ, "PositionZ")
      .row<UnitsLength>(view.PositionZUnit, "PositionZUnit");
}

TEST(OmePlaneTest, BeginsWithNullUnderEachKeyAndWithoutId) {
  Value tree;
  const Plane view(&tree, Value(), 3);
  EXPECT_EQ(text_of(tree),
            R"({"DeltaT":null,"DeltaTUnit":null,"ExposureTime":null,"ExposureTimeUnit":null,)"
            R"("PositionX":null,"PositionXUnit":null,"PositionY":null,"PositionYUnit":null,)"
            R"("PositionZ":null,"PositionZUnit":null,"TheC":null,"TheT":null,"TheZ":null})");
}

TEST(OmePlaneTest, AnExposureTakesTimeButADeltaMayBeZeroOrLess) {
  Value tree;
  Plane view(&tree);
  EXPECT_BAD_CAST(view.ExposureTime = 0);
  EXPECT_BAD_CAST(view.ExposureTime = 0.0);
  view.DeltaT = 0;
  view.DeltaT = -1.5;
  view.TheZ = 0;
  EXPECT_EQ(tree["DeltaT"], Value(-1.5));
  EXPECT_EQ(tree["TheZ"], Value(0));
  EXPECT_TRUE(tree["ExposureTime"].is_null());
}

TEST(OmeManufacturerSpecTest, HasItsFields) {
  Value tree;
  const ManufacturerSpec view(&tree, Value(), 3);
  Table(tree)
      .row<String>(view.Manufacturer, "Manufacturer")
      .row<String>(view.Model, "Model")
      .row<String>(view.SerialNumber, "SerialNumber")
      .row<String>(view.LotNumber, "LotNumber");
  EXPECT_EQ(text_of(tree),
            R"({"LotNumber":null,"Manufacturer":null,"Model":null,"SerialNumber":null})");
}

TEST(OmeLightSourceTest, HasItsFieldsBehindThoseOfItsBase) {
  Value tree;
  const LightSource view(&tree);
  Table(tree)
      .row<String>(view.Manufacturer, "Manufacturer")
      .row<String>(view.Model, "Model")
      .row<String>(view.SerialNumber, "SerialNumber")
      .row<String>(view.LotNumber, "LotNumber")
      .row<String>(view.ID, "ID")
      .row<PositiveFloat>(view.Power, "Power")
      .row<UnitsPower>(view.PowerUnit, "PowerUnit")
      .row<Object>(view.Content, "")
      .in({""})
      .row<Object>(view.Laser, "ome:Laser")
      .row<Object>(view.Filament, "ome:Filament")
      .row<Object>(view.Arc, "ome:Arc")
      .row<Object>(view.LightEmittingDiode, "ome:LightEmittingDiode")
      .row<Object>(view.GenericExcitationSource, "ome:GenericExcitationSource");
}

TEST(OmeLightSourceTest, BeginsWithNullUnderEachKey) {
  Value tree;
  const LightSource view(&tree, Value(), 3);
  EXPECT_EQ(text_of(tree),
            R"({"":{"ome:Arc":null,"ome:Filament":null,"ome:GenericExcitationSource":null,)"
            R"("ome:Laser":null,"ome:LightEmittingDiode":null},)"
            R"("ID":null,"LotNumber":null,"Manufacturer":null,"Model":null,"Power":null,)"
            R"("PowerUnit":null,"SerialNumber":null})");
}

TEST(OmeLightSourceSettingsTest, HasItsFields) {
  Value tree;
  const LightSourceSettings view(&tree, Value(), 3);
  Table(tree)
      .row<String>(view.ID, "ID")
      .row<PercentFraction>(view.Attenuation, "Attenuation")
      .row<PositiveFloat>(view.Wavelength, "Wavelength")
      .row<UnitsLength>(view.WavelengthUnit, "WavelengthUnit");
  EXPECT_EQ(text_of(tree),
            R"({"Attenuation":null,"ID":null,"Wavelength":null,"WavelengthUnit":null})");
}

TEST(OmeLightSourceSettingsTest, AnAttenuationGoesFromZeroToOne) {
  Value tree;
  LightSourceSettings view(&tree);
  view.Attenuation = 0;
  EXPECT_EQ(tree["Attenuation"], Value(0.0));
  view.Attenuation = 1.0;
  EXPECT_BAD_CAST(view.Attenuation = 1.5);
  EXPECT_BAD_CAST(view.Attenuation = -0.1);
  EXPECT_EQ(tree["Attenuation"], Value(1.0));
}

TEST(OmeChannelTest, HasItsFields) {
  Value tree;
  const Channel view(&tree);
  Table(tree)
      .row<String>(view.ID, "ID")
      .row<String>(view.Name, "Name")
      .row<PositiveInt>(view.SamplesPerPixel, "SamplesPerPixel")
      .row<Field::IlluminationType<Signaling>>(view.IlluminationType, "IlluminationType")
      .row<PositiveFloat>(view.PinholeSize, "PinholeSize")
      .row<UnitsLength>(view.PinholeSizeUnit, "PinholeSizeUnit")
      .row<Field::AcquisitionMode<Signaling>>(view.AcquisitionMode, "AcquisitionMode")
      .row<Field::ContrastMethod<Signaling>>(view.ContrastMethod, "ContrastMethod")
      .row<PositiveFloat>(view.ExcitationWavelength, "ExcitationWavelength")
      .row<UnitsLength>(view.ExcitationWavelengthUnit, "ExcitationWavelengthUnit")
      .row<PositiveFloat>(view.EmissionWavelength, "EmissionWavelength")
      .row<UnitsLength>(view.EmissionWavelengthUnit, "EmissionWavelengthUnit")
      .row<String>(view.Fluor, "Fluor")
      .row<PercentFraction>(view.NDFilter, "NDFilter")
      .row<Int>(view.PockelCellSetting, "PockelCellSetting")
      .row<Int>(view.Color, "Color")
      .row<Object>(view.Content, "")
      .in({""})
      .list<LightSourceSettings>(view.LightSourceSettings, "ome:LightSourceSettings")
      .row<Object>(view.DetectorSettings, "ome:DetectorSettings")
      .row<Object>(view.FilterSetRef, "ome:FilterSetRef")
      .row<Object>(view.LightPath, "ome:LightPath");
}

TEST(OmeChannelTest, BeginsWithItsIdAndNullUnderEachOtherKey) {
  Value tree;
  const Channel view(&tree, Value(), 3);
  EXPECT_EQ(
      text_of(tree),
      R"({"":{"ome:DetectorSettings":null,"ome:FilterSetRef":null,"ome:LightPath":null,)"
      R"("ome:LightSourceSettings":null},)"
      R"("AcquisitionMode":null,"Color":null,"ContrastMethod":null,"EmissionWavelength":null,)"
      R"("EmissionWavelengthUnit":null,"ExcitationWavelength":null,)"
      R"("ExcitationWavelengthUnit":null,"Fluor":null,"ID":"Channel:3","IlluminationType":null,)"
      R"("NDFilter":null,"Name":null,"PinholeSize":null,"PinholeSizeUnit":null,)"
      R"("PockelCellSetting":null,"SamplesPerPixel":null})");
}

TEST(OmeChannelTest, KeepsTheIdOfTheTree) {
  Value tree;
  tree["ID"] = "mine";
  const Channel view(&tree, Value(), 3);
  EXPECT_EQ(tree["ID"], Value("mine"));
}

TEST(OmeInstrumentTest, HasItsFields) {
  Value tree;
  const Instrument view(&tree);
  Table(tree)
      .row<String>(view.ID, "ID")
      .row<Object>(view.Content, "")
      .in({""})
      .row<Object>(view.Microscope, "ome:Microscope")
      .row<Object>(view.Detector, "ome:Detector")
      .row<Object>(view.Objective, "ome:Objective")
      .row<Object>(view.FilterSet, "ome:FilterSet")
      .row<Object>(view.Filter, "ome:Filter")
      .row<Object>(view.Dichroic, "ome:Dichroic")
      .list<LightSource>(view.LightSource, "ome:LightSource");
}

TEST(OmeInstrumentTest, BeginsWithoutId) {
  Value tree;
  const Instrument view(&tree, Value(), 3);
  EXPECT_EQ(text_of(tree), R"({"":{"ome:Detector":null,"ome:Dichroic":null,"ome:Filter":null,)"
                           R"("ome:FilterSet":null,"ome:LightSource":null,"ome:Microscope":null,)"
                           R"("ome:Objective":null},"ID":null})");
}

TEST(OmeImageTest, HasItsFieldsAndThoseOfItsPixels) {
  Value tree;
  const Image view(&tree);
  Table(tree)
      .row<String>(view.ID, "ID")
      .row<String>(view.Name, "Name")
      .row<Object>(view.Content, "")
      .in({""})
      .row<Field::DateTime<Signaling>>(view.AcquisitionDate, "ome:AcquisitionDate")
      .row<String>(view.Description, "ome:Description")
      .row<Object>(view.Pixels, "ome:Pixels")
      .in({"", "ome:Pixels"})
      .row<String>(view.PixelsID, "ID")
      .row<Field::DimensionOrder<Signaling>>(view.DimensionOrder, "DimensionOrder")
      .row<Field::PixelType<Signaling>>(view.Type, "Type")
      .row<PositiveInt>(view.SignificantBits, "SignificantBits")
      .row<Bool>(view.Interleaved, "Interleaved")
      .row<Bool>(view.BigEndian, "BigEndian")
      .row<PositiveInt>(view.SizeX, "SizeX")
      .row<PositiveInt>(view.SizeY, "SizeY")
      .row<PositiveInt>(view.SizeZ, "SizeZ")
      .row<PositiveInt>(view.SizeC, "SizeC")
      .row<PositiveInt>(view.SizeT, "SizeT")
      .row<PositiveFloat>(view.PhysicalSizeX, "PhysicalSizeX")
      .row<UnitsLength>(view.PhysicalSizeXUnit, "PhysicalSizeXUnit")
      .row<PositiveFloat>(view.PhysicalSizeY, "PhysicalSizeY")
      .row<UnitsLength>(view.PhysicalSizeYUnit, "PhysicalSizeYUnit")
      .row<PositiveFloat>(view.PhysicalSizeZ, "PhysicalSizeZ")
      .row<UnitsLength>(view.PhysicalSizeZUnit, "PhysicalSizeZUnit")
      .row<PositiveFloat>(view.TimeIncrement, "TimeIncrement")
      .row<UnitsTime>(view.TimeIncrementUnit, "TimeIncrementUnit")
      .row<Object>(view.PixelsContent, "")
      .in({"", "ome:Pixels", ""})
      .row<Object>(view.MetadataOnly, "ome:MetadataOnly")
      .list<Channel>(view.Channel, "ome:Channel")
      .list<Plane>(view.Plane, "ome:Plane");
}

// What an image without number begins with.
const std::string new_image =
    R"({"":{"ome:AcquisitionDate":null,"ome:Description":null,"ome:Pixels":{)"
    R"("":{"ome:Channel":null,"ome:MetadataOnly":{},"ome:Plane":null},)"
    R"("BigEndian":null,"DimensionOrder":null,"ID":null,"Interleaved":null,)"
    R"("PhysicalSizeX":1.0,"PhysicalSizeXUnit":"pixel",)"
    R"("PhysicalSizeY":1.0,"PhysicalSizeYUnit":"pixel",)"
    R"("PhysicalSizeZ":1.0,"PhysicalSizeZUnit":"pixel","SignificantBits":null,)"
    R"("SizeC":null,"SizeT":null,"SizeX":null,"SizeY":null,"SizeZ":null,)"
    R"("TimeIncrement":null,"TimeIncrementUnit":null,"Type":null}},"ID":null,"Name":null})";

TEST(OmeImageTest, BeginsWithItsDefaults) {
  Value tree;
  const Image view(&tree);
  EXPECT_EQ(text_of(tree), new_image);
}

TEST(OmeImageTest, ANumberMakesBothIds) {
  Value tree;
  const Image view(&tree, Value(), 2);
  EXPECT_EQ(view.ID.value(), Value("Image:2"));
  EXPECT_EQ(view.PixelsID.value(), Value("Pixels:2"));
}

TEST(OmeImageTest, ASizeIsPositive) {
  Value tree;
  Image view(&tree);
  EXPECT_BAD_CAST(view.SizeX = 0);
  EXPECT_EQ(text_of(tree), new_image);
}

TEST(OmeImageTest, AnIntegerLengthBecomesADecimal) {
  Value tree;
  Image view(&tree);
  view.PhysicalSizeX = 3;
  EXPECT_EQ(view.PhysicalSizeX.value(), Value(3.0));
}

TEST(OmeImageTest, ASecondViewSeesWhatTheFirstHasSet) {
  Value tree;
  {
    Image view(&tree, Value(), 1);
    view.SizeX = 640;
    view.PhysicalSizeXUnit = "nm";
    view.Channel.append()->Name = "red";
  }
  const std::string text = text_of(tree);
  Image view(&tree, Value(), 9);
  EXPECT_EQ(text_of(tree), text);
  EXPECT_EQ(view.Channel[0]->Name.value(), Value("red"));
}

TEST(OmeImageTest, AnInvalidTreeCannotBeViewed) {
  Value tree;
  tree[""]["ome:Pixels"]["SizeX"] = -1;
  EXPECT_BAD_CAST(Image image(&tree));
}

TEST(OmeImageTest, AnInvalidElementOfAListCannotBeViewed) {
  Value tree;
  tree[""]["ome:Pixels"][""]["ome:Channel"] = "text";
  EXPECT_BAD_CAST(Image image(&tree));
}

TEST(OmeImageTest, OnlyAMapOrNullCanBeViewed) {
  for (const Value& value : {Value(1), Value("text"), Value(Json::Array()), Value(true)}) {
    Value tree = value;
    EXPECT_BAD_CAST(Image image(&tree));
    EXPECT_EQ(tree, value);
  }
}

TEST(OmeImageTest, AnInitialValueIsThereBeforeTheDefaults) {
  Value initial;
  initial["ID"] = "mine";
  initial[""]["ome:Pixels"]["SizeX"] = 7;
  initial[""]["ome:Pixels"]["PhysicalSizeX"] = 2;
  Value tree;
  tree["Name"] = "gone";
  const Image view(&tree, initial, 4);
  EXPECT_EQ(view.ID.value(), Value("mine"));
  EXPECT_EQ(view.PixelsID.value(), Value("Pixels:4"));
  EXPECT_EQ(view.SizeX.value(), Value(7));
  EXPECT_EQ(view.PhysicalSizeX.value(), Value(2.0));
  EXPECT_TRUE(view.Name.value().is_null());
}

TEST(OmeImageTest, AnInitialValueThatIsNoMapIsRefused) {
  Value tree;
  EXPECT_BAD_CAST(Image image(&tree, Value("text")));
  EXPECT_TRUE(tree.is_null());
}

TEST(OmeImageTest, WhatItDoesNotKnowStays) {
  Value tree;
  tree["Unknown"] = 5;
  tree[""]["ome:ROIRef"]["ID"] = "ROI:1";
  const Image view(&tree);
  EXPECT_EQ(tree["Unknown"], Value(5));
  EXPECT_EQ(tree[""]["ome:ROIRef"]["ID"], Value("ROI:1"));
}

TEST(OmeDocumentTest, HasItsFields) {
  Value tree;
  const Document view(&tree);
  Table(tree)
      .row<Object>(view.OME, "ome:OME")
      .in({"ome:OME"})
      .row<String>(view.xmlns_ome, "xmlns:ome")
      .row<String>(view.xmlns_xsi, "xmlns:xsi")
      .row<String>(view.xsi_schemaLocation, "xsi:schemaLocation")
      .row<Field::Uuid<Signaling>>(view.UUID, "UUID")
      .row<String>(view.Creator, "Creator")
      .row<Object>(view.Content, "")
      .in({"ome:OME", ""})
      .list<Instrument>(view.Instrument, "ome:Instrument")
      .list<Image>(view.Image, "ome:Image");
}

TEST(OmeDocumentTest, BeginsWithItsNamespaces) {
  Value tree;
  const Document view(&tree, Value(), 3);
  EXPECT_EQ(text_of(tree),
            R"({"ome:OME":{"":{"ome:Image":null,"ome:Instrument":null},"Creator":null,)"
            R"("UUID":null,"xmlns:ome":"http://www.openmicroscopy.org/Schemas/OME/2015-01",)"
            R"("xmlns:xsi":"http://www.w3.org/2001/XMLSchema-instance",)"
            R"("xsi:schemaLocation":"http://www.openmicroscopy.org/Schemas/OME/2015-01 )"
            R"(http://www.openmicroscopy.org/Schemas/OME/2015-01/ome.xsd"}})");
}

TEST(OmeDocumentTest, AnInitialValueIsTheRootElement) {
  Value initial;
  initial["Creator"] = "me";
  Value tree;
  const Document view(&tree, initial);
  EXPECT_EQ(tree["ome:OME"]["Creator"], Value("me"));
}

TEST(OmeDocumentTest, TheNullUuidIsRefused) {
  Value tree;
  Document view(&tree);
  EXPECT_BAD_CAST(view.UUID = "urn:uuid:00000000-0000-0000-0000-000000000000");
  view.UUID = "urn:uuid:12345678-9abc-def0-1234-56789abcdef0";
  EXPECT_BAD_CAST(view.UUID = "urn:uuid:00000000-0000-0000-0000-000000000000");
  EXPECT_EQ(view.UUID.value(), Value("urn:uuid:12345678-9abc-def0-1234-56789abcdef0"));
}

TEST(OmeDocumentTest, IsWrittenAsXml) {
  Value tree;
  Document view(&tree);
  view.Creator = "tests";
  const auto image = view.Image.append();
  image->Name = "a<b";
  image->SizeX = 2;
  image->Channel.append();
  image->Channel.append();
  view.Instrument.append()->ID = "Instrument:1";
  std::ostringstream stream;
  Json::write_xml(tree, stream);
  EXPECT_EQ(
      stream.str(),
      R"(<?xml version="1.0" encoding="UTF-8"?><ome:OME Creator="tests" )"
      R"(xmlns:ome="http://www.openmicroscopy.org/Schemas/OME/2015-01" )"
      R"(xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" )"
      R"(xsi:schemaLocation="http://www.openmicroscopy.org/Schemas/OME/2015-01 )"
      R"(http://www.openmicroscopy.org/Schemas/OME/2015-01/ome.xsd">)"
      R"(<ome:Image ID="Image:1" Name="a&lt;b"><ome:Pixels ID="Pixels:1" PhysicalSizeX="1.0" )"
      R"(PhysicalSizeXUnit="pixel" PhysicalSizeY="1.0" PhysicalSizeYUnit="pixel" )"
      R"(PhysicalSizeZ="1.0" PhysicalSizeZUnit="pixel" SizeX="2">)"
      R"(<ome:Channel ID="Channel:1"></ome:Channel><ome:Channel ID="Channel:2"></ome:Channel>)"
      R"(<ome:MetadataOnly/></ome:Pixels></ome:Image>)"
      R"(<ome:Instrument ID="Instrument:1"></ome:Instrument></ome:OME>)");
}

}  // namespace
