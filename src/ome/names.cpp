#include "ome/names_internal.h"

#include <vrelio/ome/types.h>

#include <cstddef>

namespace Ome {
namespace {

// clang-format off
constexpr const char* length_units[] = {
    "Ym", "Zm", "Em", "Pm", "Tm", "Gm", "Mm", "km", "hm", "dam", "m", "dm", "cm", "mm", "\u00b5m",
    "nm", "pm", "fm", "am", "zm", "ym", "\u212b", "thou", "li", "in", "ft", "yd", "mi", "ua", "ly",
    "pc", "pt", "pixel", "reference frame"};

constexpr const char* time_units[] = {
    "Ys", "Zs", "Es", "Ps", "Ts", "Gs", "Ms", "ks", "hs", "das", "s", "ds", "cs", "ms", "\u00b5s",
    "ns", "ps", "fs", "as", "zs", "ys", "min", "h", "d"};

constexpr const char* power_units[] = {
    "YW", "ZW", "EW", "PW", "TW", "GW", "MW", "kW", "hW", "daW", "W", "dW", "cW", "mW", "\u00b5W",
    "nW", "pW", "fW", "aW", "zW", "yW"};
// clang-format on

constexpr const char* illumination_types[] = {"Transmitted", "Epifluorescence", "Oblique",
                                              "NonLinear", "Other"};

constexpr const char* acquisition_modes[] = {"WideField",
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
                                             "Other"};

constexpr const char* contrast_methods[] = {"Brightfield",
                                            "Phase",
                                            "DIC",
                                            "HoffmanModulation",
                                            "ObliqueIllumination",
                                            "PolarizedLight",
                                            "Darkfield",
                                            "Fluorescence",
                                            "Other"};

template <std::size_t size>
int find(const char* const (&names)[size], const std::string& text) {
  for (std::size_t i = 0; i < size; ++i)
    if (text == names[i]) return static_cast<int>(i);
  return -1;
}

// The names of an enumeration, which begins with 0 and has no gaps.
template <class Enum>
int find(const char* (*get_name)(Enum), const std::string& text) {
  int i = 0;
  while (const char* const name = get_name(static_cast<Enum>(i))) {
    if (text == name) return i;
    ++i;
  }
  return -1;
}

}  // namespace

int find_length_unit(const std::string& text) { return find(length_units, text); }

int find_time_unit(const std::string& text) { return find(time_units, text); }

int find_power_unit(const std::string& text) { return find(power_units, text); }

int find_illumination_type(const std::string& text) { return find(illumination_types, text); }

int find_acquisition_mode(const std::string& text) { return find(acquisition_modes, text); }

int find_contrast_method(const std::string& text) { return find(contrast_methods, text); }

int find_dimension_order(const std::string& text) { return find(get_dimension_order_name, text); }

int find_pixel_type(const std::string& text) { return find(get_type_name, text); }

}  // namespace Ome
