// The views of one channel of an image and of the light that it is taken with; docs/ome.md, "Views".
#pragma once

#include <vrelio/ome/fields.h>
#include <vrelio/ome/list.h>

namespace Ome {

/// The element "ome:LightSourceSettings": how a channel uses a light source.
template <class Reference>
class LightSourceSettings {
 public:
  /// What the fields are.
  using reference = Reference;

  /// View `value`, which has to outlive the view.
  /// \param[in] value    not null; a null value or a map.
  /// \param[in] initial  assigned to the element at first, unless it is null.
  /// \param[in] number   without meaning, since the ID is that of a light source.
  /// \param[in] remains  where values go that later assignments take out of the tree.
  /// \throws Json::BadCast "bad cast" if the element or an attribute breaks the rule of its field.
  explicit LightSourceSettings(Json::Value* value, Json::Value initial = {},
                               unsigned int number = 0, const Remains& remains = Remains());

  // clang-format off
  Field::Object<Reference> Element;  ///< the element itself

  Field::String<Reference> ID{Element, "ID"};  ///< ID of the light source
  Field::PercentFraction<Reference> Attenuation{Element, "Attenuation"};  ///< share of the light taken away
  Field::PositiveFloat<Reference> Wavelength{Element, "Wavelength"};  ///< wavelength of the light
  Field::UnitsLength<Reference> WavelengthUnit{Element, "WavelengthUnit"};  ///< unit of `Wavelength`
  // clang-format on
};

/// The element "ome:Channel": what a channel shows and how it is taken.
template <class Reference>
class Channel {
 public:
  /// What the fields are.
  using reference = Reference;

  /// View `value`, which has to outlive the view.
  /// \param[in] value    not null; a null value or a map.
  /// \param[in] initial  assigned to the element at first, unless it is null.
  /// \param[in] number   of the channel, counted from 1, for the default of its ID; 0 for none.
  /// \param[in] remains  where values go that later assignments take out of the tree.
  /// \throws Json::BadCast "bad cast" if anything in the element breaks the rule of its field.
  explicit Channel(Json::Value* value, Json::Value initial = {}, unsigned int number = 0,
                   const Remains& remains = Remains());

  // clang-format off
  Field::Object<Reference> Element;  ///< the element itself

  Field::String<Reference> ID;  ///< "Channel:" and the number, by default
  Field::String<Reference> Name{Element, "Name"};  ///< name for people
  Field::PositiveInt<Reference> SamplesPerPixel{Element, "SamplesPerPixel"};  ///< values in each pixel
  Field::IlluminationType<Reference> IlluminationType{Element, "IlluminationType"};  ///< way of lighting
  Field::PositiveFloat<Reference> PinholeSize{Element, "PinholeSize"};  ///< diameter of the pinhole
  Field::UnitsLength<Reference> PinholeSizeUnit{Element, "PinholeSizeUnit"};  ///< unit of `PinholeSize`
  Field::AcquisitionMode<Reference> AcquisitionMode{Element, "AcquisitionMode"};  ///< kind of microscopy
  Field::ContrastMethod<Reference> ContrastMethod{Element, "ContrastMethod"};  ///< source of the contrast
  Field::PositiveFloat<Reference> ExcitationWavelength{Element, "ExcitationWavelength"};  ///< wavelength of excitation
  Field::UnitsLength<Reference> ExcitationWavelengthUnit{Element, "ExcitationWavelengthUnit"};  ///< unit of `ExcitationWavelength`
  Field::PositiveFloat<Reference> EmissionWavelength{Element, "EmissionWavelength"};  ///< wavelength of emission
  Field::UnitsLength<Reference> EmissionWavelengthUnit{Element, "EmissionWavelengthUnit"};  ///< unit of `EmissionWavelength`
  Field::String<Reference> Fluor{Element, "Fluor"};  ///< name of the fluorophore
  Field::PercentFraction<Reference> NDFilter{Element, "NDFilter"};  ///< share of the light that the filter takes away
  Field::Int<Reference> PockelCellSetting{Element, "PockelCellSetting"};  ///< setting of the Pockel cell
  Field::Int<Reference> Color{Element, "Color"};  ///< color to show the channel in, a byte each of red, green, blue, alpha

  Field::Object<Reference> Content{Element, "", Json::Object()};  ///< the child elements
  List<Ome::LightSourceSettings<Reference>> LightSourceSettings{Content, "ome:LightSourceSettings"};  ///< the light
  Field::Object<Reference> DetectorSettings{Content, "ome:DetectorSettings"};  ///< free
  Field::Object<Reference> FilterSetRef{Content, "ome:FilterSetRef"};  ///< free
  Field::Object<Reference> LightPath{Content, "ome:LightPath"};  ///< free
  // clang-format on
};

extern template class VRELIO_EXPORT LightSourceSettings<Json::SignalingReference>;
extern template class VRELIO_EXPORT List<LightSourceSettings<Json::SignalingReference>>;
extern template class VRELIO_EXPORT Channel<Json::SignalingReference>;

}  // namespace Ome
