#include "ome/names_internal.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct NameList {
  const char* what;
  int (*find)(const std::string&);
  std::size_t count;
  std::vector<std::string> names;
};

const std::vector<NameList> name_lists = {
    {"length units", Ome::find_length_unit, 34, {"Ym",        "Zm",
                                                 "Em",        "Pm",
                                                 "Tm",        "Gm",
                                                 "Mm",        "km",
                                                 "hm",        "dam",
                                                 "m",         "dm",
                                                 "cm",        "mm",
                                                 "\xC2\xB5m", "nm",
                                                 "pm",        "fm",
                                                 "am",        "zm",
                                                 "ym",        "\xE2\x84\xAB",
                                                 "thou",      "li",
                                                 "in",        "ft",
                                                 "yd",        "mi",
                                                 "ua",        "ly",
                                                 "pc",        "pt",
                                                 "pixel",     "reference frame"}},
    {"time units", Ome::find_time_unit, 24, {"Ys", "Zs", "Es",        "Ps",  "Ts", "Gs",
                                             "Ms", "ks", "hs",        "das", "s",  "ds",
                                             "cs", "ms", "\xC2\xB5s", "ns",  "ps", "fs",
                                             "as", "zs", "ys",        "min", "h",  "d"}},
    {"power units", Ome::find_power_unit, 21, {"YW",        "ZW", "EW",  "PW", "TW", "GW", "MW",
                                               "kW",        "hW", "daW", "W",  "dW", "cW", "mW",
                                               "\xC2\xB5W", "nW", "pW",  "fW", "aW", "zW", "yW"}},
    {"illumination types",
     Ome::find_illumination_type,
     5,
     {"Transmitted", "Epifluorescence", "Oblique", "NonLinear", "Other"}},
    {"acquisition modes",
     Ome::find_acquisition_mode,
     20,
     {"WideField",
      "LaserScanningConfocalMicroscopy",
      "SpinningDiskConfocal",
      "SlitScanConfocal",
      "MultiPhotonMicroscopy",
      "StructuredIllumination",
      "SingleMoleculeImaging",
      "TotalInternalReflection",
      "FluorescenceLifetime",
      "SpectralImaging",
      "FluorescenceCorrelationSpectroscopy",
      "NearFieldScanningOpticalMicroscopy",
      "SecondHarmonicGenerationImaging",
      "PALM",
      "STORM",
      "STED",
      "TIRF",
      "FSM",
      "LCM",
      "Other"}},
    {"contrast methods",
     Ome::find_contrast_method,
     9,
     {"Brightfield", "Phase", "DIC", "HoffmanModulation", "ObliqueIllumination", "PolarizedLight",
      "Darkfield", "Fluorescence", "Other"}},
    {"dimension orders",
     Ome::find_dimension_order,
     6,
     {"XYZCT", "XYZTC", "XYCTZ", "XYCZT", "XYTCZ", "XYTZC"}},
    {"pixel types",
     Ome::find_pixel_type,
     11,
     {"bit", "int8", "int16", "int32", "uint8", "uint16", "uint32", "float", "double", "complex",
      "double-complex"}}};

TEST(OmeNamesTest, EveryNameHasItsPosition) {
  for (const NameList& list : name_lists) {
    ASSERT_EQ(list.names.size(), list.count) << list.what;
    for (std::size_t i = 0; i < list.count; ++i) {
      EXPECT_EQ(list.find(list.names[i]), static_cast<int>(i)) << list.what << " " << list.names[i];
    }
  }
}

TEST(OmeNamesTest, NoOtherTextIsAName) {
  for (const NameList& list : name_lists) {
    for (const std::string& name : list.names) {
      EXPECT_EQ(list.find(name + " "), -1) << list.what << " " << name;
      EXPECT_EQ(list.find(" " + name), -1) << list.what << " " << name;
      EXPECT_EQ(list.find(name + std::string(1, '\0')), -1) << list.what << " " << name;
    }
    for (const char* const text : {"", "other", "MM", "KM", "S", "w", "xyzct", "Uint8"}) {
      EXPECT_EQ(list.find(text), -1) << list.what << " " << text;
    }
  }
}

TEST(OmeNamesTest, OtherCharactersThatLookTheSameAreNoUnits) {
  const std::string greek_mu = "\xCE\xBC";
  EXPECT_EQ(Ome::find_length_unit(greek_mu + "m"), -1);
  EXPECT_EQ(Ome::find_time_unit(greek_mu + "s"), -1);
  EXPECT_EQ(Ome::find_power_unit(greek_mu + "W"), -1);
  EXPECT_EQ(Ome::find_length_unit("um"), -1);
  EXPECT_EQ(Ome::find_length_unit("\xC3\x85"), -1);  // the letter A with a ring
}

}  // namespace
