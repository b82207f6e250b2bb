// The view of one plane of an image; docs/ome.md, "Views".
#pragma once

#include <vrelio/ome/fields.h>

namespace Ome {

/// The element "ome:Plane": where and when one plane was taken.
template <class Reference>
class Plane {
 public:
  /// What the fields are.
  using reference = Reference;

  /// View `value`, which has to outlive the view.
  /// \param[in] value    not null; a null value or a map.
  /// \param[in] initial  assigned to the element at first, unless it is null.
  /// \param[in] number   without meaning, since planes have no ID.
  /// \param[in] remains  where values go that later assignments take out of the tree.
  /// \throws Json::BadCast "bad cast" if the element or an attribute breaks the rule of its field.
  explicit Plane(Json::Value* value, Json::Value initial = {}, unsigned int number = 0,
                 const Remains& remains = Remains());

  // clang-format off
  Field::Object<Reference> Element;  ///< the element itself

  Field::NonNegativeInt<Reference> TheZ{Element, "TheZ"};  ///< index along Z
  Field::NonNegativeInt<Reference> TheT{Element, "TheT"};  ///< index along T
  Field::NonNegativeInt<Reference> TheC{Element, "TheC"};  ///< index along C
  Field::Float<Reference> DeltaT{Element, "DeltaT"};  ///< time since the beginning
  Field::UnitsTime<Reference> DeltaTUnit{Element, "DeltaTUnit"};  ///< unit of `DeltaT`
  Field::PositiveFloat<Reference> ExposureTime{Element, "ExposureTime"};  ///< duration of the exposure
  Field::UnitsTime<Reference> ExposureTimeUnit{Element, "ExposureTimeUnit"};  ///< unit of `ExposureTime`
  Field::Float<Reference> PositionX{Element, "PositionX"};  ///< stage position along X
  Field::UnitsLength<Reference> PositionXUnit{Element, "PositionXUnit"};  ///< unit of `PositionX`
  Field::Float<Reference> PositionY{Element, "PositionY"};  ///< stage position along Y
  Field::UnitsLength<Reference> PositionYUnit{Element, "PositionYUnit"};  ///< unit of `PositionY`
  Field::Float<Reference> PositionZ{Element, "PositionZ"};  ///< stage position along Z
  Field::UnitsLength<Reference> PositionZUnit{Element, "PositionZUnit"};  ///< unit of `PositionZ`
  // clang-format on
};

extern template class VRELIO_EXPORT Plane<Json::SignalingReference>;

}  // namespace Ome
