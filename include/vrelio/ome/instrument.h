// The views of an instrument and its light sources; docs/ome.md, "Views".
#pragma once

#include <vrelio/ome/fields.h>
#include <vrelio/ome/list.h>

namespace Ome {

/// What elements have that somebody manufactures.
template <class Reference>
class ManufacturerSpec {
 public:
  /// What the fields are.
  using reference = Reference;

  /// View `value`, which has to outlive the view.
  /// \param[in] value    not null; a null value or a map.
  /// \param[in] initial  assigned to the element at first, unless it is null.
  /// \param[in] number   without meaning, since these elements have no default ID.
  /// \param[in] remains  where values go that later assignments take out of the tree.
  /// \throws Json::BadCast "bad cast" if the element or an attribute breaks the rule of its field.
  explicit ManufacturerSpec(Json::Value* value, Json::Value initial = {}, unsigned int number = 0,
                            const Remains& remains = Remains());

  // clang-format off
  Field::Object<Reference> Element;  ///< the element itself

  Field::String<Reference> Manufacturer{Element, "Manufacturer"};  ///< who made it
  Field::String<Reference> Model{Element, "Model"};  ///< what it is called there
  Field::String<Reference> SerialNumber{Element, "SerialNumber"};  ///< number of the single piece
  Field::String<Reference> LotNumber{Element, "LotNumber"};  ///< number of the lot
  // clang-format on
};

/// The element "ome:LightSource". Which of the five kinds it is shows in the one of the five objects that
/// is set; nobody checks that it is one.
template <class Reference>
class LightSource : public ManufacturerSpec<Reference> {
 public:
  using ManufacturerSpec<Reference>::Element;

  /// View `value`, which has to outlive the view.
  /// \param[in] value    not null; a null value or a map.
  /// \param[in] initial  assigned to the element at first, unless it is null.
  /// \param[in] number   without meaning, since light sources have no default ID.
  /// \param[in] remains  where values go that later assignments take out of the tree.
  /// \throws Json::BadCast "bad cast" if anything in the element breaks the rule of its field.
  explicit LightSource(Json::Value* value, Json::Value initial = {}, unsigned int number = 0,
                       const Remains& remains = Remains());

  // clang-format off
  Field::String<Reference> ID{Element, "ID"};  ///< what others refer to it by
  Field::PositiveFloat<Reference> Power{Element, "Power"};  ///< power of the light
  Field::UnitsPower<Reference> PowerUnit{Element, "PowerUnit"};  ///< unit of `Power`

  Field::Object<Reference> Content{Element, "", Json::Object()};  ///< the child elements
  Field::Object<Reference> Laser{Content, "ome:Laser"};  ///< free
  Field::Object<Reference> Filament{Content, "ome:Filament"};  ///< free
  Field::Object<Reference> Arc{Content, "ome:Arc"};  ///< free
  Field::Object<Reference> LightEmittingDiode{Content, "ome:LightEmittingDiode"};  ///< free
  Field::Object<Reference> GenericExcitationSource{Content, "ome:GenericExcitationSource"};  ///< free
  // clang-format on
};

/// The element "ome:Instrument": what images are taken with.
template <class Reference>
class Instrument {
 public:
  /// What the fields are.
  using reference = Reference;

  /// View `value`, which has to outlive the view.
  /// \param[in] value    not null; a null value or a map.
  /// \param[in] initial  assigned to the element at first, unless it is null.
  /// \param[in] number   without meaning, since instruments have no default ID.
  /// \param[in] remains  where values go that later assignments take out of the tree.
  /// \throws Json::BadCast "bad cast" if anything in the element breaks the rule of its field.
  explicit Instrument(Json::Value* value, Json::Value initial = {}, unsigned int number = 0,
                      const Remains& remains = Remains());

  // clang-format off
  Field::Object<Reference> Element;  ///< the element itself

  Field::String<Reference> ID{Element, "ID"};  ///< what others refer to it by

  Field::Object<Reference> Content{Element, "", Json::Object()};  ///< the child elements
  Field::Object<Reference> Microscope{Content, "ome:Microscope"};  ///< free
  Field::Object<Reference> Detector{Content, "ome:Detector"};  ///< free
  Field::Object<Reference> Objective{Content, "ome:Objective"};  ///< free
  Field::Object<Reference> FilterSet{Content, "ome:FilterSet"};  ///< free
  Field::Object<Reference> Filter{Content, "ome:Filter"};  ///< free
  Field::Object<Reference> Dichroic{Content, "ome:Dichroic"};  ///< free
  List<Ome::LightSource<Reference>> LightSource{Content, "ome:LightSource"};  ///< all light sources
  // clang-format on
};

extern template class VRELIO_EXPORT ManufacturerSpec<Json::SignalingReference>;
extern template class VRELIO_EXPORT LightSource<Json::SignalingReference>;
extern template class VRELIO_EXPORT List<LightSource<Json::SignalingReference>>;
extern template class VRELIO_EXPORT Instrument<Json::SignalingReference>;

}  // namespace Ome
