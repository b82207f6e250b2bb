// The view of one image, that is the metadata of one stack; docs/ome.md, "Views".
#pragma once

#include <vrelio/ome/channel.h>
#include <vrelio/ome/fields.h>
#include <vrelio/ome/list.h>
#include <vrelio/ome/plane.h>

namespace Ome {

/// The element "ome:Image" and, in one object with it, its child "ome:Pixels".
template <class Reference>
class Image {
 public:
  /// What the fields are.
  using reference = Reference;

  /// View `value`, which has to outlive the view.
  /// \param[in] value    not null; a null value or a map.
  /// \param[in] initial  assigned to the element at first, unless it is null.
  /// \param[in] number   of the image, counted from 1, for the defaults of both IDs; 0 for none.
  /// \param[in] remains  where values go that later assignments take out of the tree.
  /// \throws Json::BadCast "bad cast" if anything in the element breaks the rule of its field.
  explicit Image(Json::Value* value, Json::Value initial = {}, unsigned int number = 0,
                 const Remains& remains = Remains());

  // clang-format off
  Field::Object<Reference> Element;  ///< the element itself

  Field::String<Reference> ID;  ///< "Image:" and the number, by default
  Field::String<Reference> Name{Element, "Name"};  ///< name for people

  Field::Object<Reference> Content{Element, "", Json::Object()};  ///< the child elements of "ome:Image"
  Field::DateTime<Reference> AcquisitionDate{Content, "ome:AcquisitionDate"};  ///< when it was taken
  Field::String<Reference> Description{Content, "ome:Description"};  ///< text for people
  Field::Object<Reference> Pixels{Content, "ome:Pixels"};  ///< the element "ome:Pixels"

  Field::String<Reference> PixelsID;  ///< key "ID" of `Pixels`; "Pixels:" and the number, by default
  Field::DimensionOrder<Reference> DimensionOrder{Pixels, "DimensionOrder"};  ///< axes, the fastest first
  Field::PixelType<Reference> Type{Pixels, "Type"};  ///< type of a sample
  Field::PositiveInt<Reference> SignificantBits{Pixels, "SignificantBits"};  ///< bits of a sample that mean something
  Field::Bool<Reference> Interleaved{Pixels, "Interleaved"};  ///< whether the samples of a pixel stand together
  Field::Bool<Reference> BigEndian{Pixels, "BigEndian"};  ///< whether the high byte comes first
  Field::PositiveInt<Reference> SizeX{Pixels, "SizeX"};  ///< pixels along X
  Field::PositiveInt<Reference> SizeY{Pixels, "SizeY"};  ///< pixels along Y
  Field::PositiveInt<Reference> SizeZ{Pixels, "SizeZ"};  ///< planes along Z
  Field::PositiveInt<Reference> SizeC{Pixels, "SizeC"};  ///< samples along C
  Field::PositiveInt<Reference> SizeT{Pixels, "SizeT"};  ///< points in time
  Field::PositiveFloat<Reference> PhysicalSizeX{Pixels, "PhysicalSizeX", 1.0};  ///< length of a pixel along X
  Field::UnitsLength<Reference> PhysicalSizeXUnit{Pixels, "PhysicalSizeXUnit", "pixel"};  ///< unit of `PhysicalSizeX`
  Field::PositiveFloat<Reference> PhysicalSizeY{Pixels, "PhysicalSizeY", 1.0};  ///< length of a pixel along Y
  Field::UnitsLength<Reference> PhysicalSizeYUnit{Pixels, "PhysicalSizeYUnit", "pixel"};  ///< unit of `PhysicalSizeY`
  Field::PositiveFloat<Reference> PhysicalSizeZ{Pixels, "PhysicalSizeZ", 1.0};  ///< distance of planes along Z
  Field::UnitsLength<Reference> PhysicalSizeZUnit{Pixels, "PhysicalSizeZUnit", "pixel"};  ///< unit of `PhysicalSizeZ`
  Field::PositiveFloat<Reference> TimeIncrement{Pixels, "TimeIncrement"};  ///< time between points in time
  Field::UnitsTime<Reference> TimeIncrementUnit{Pixels, "TimeIncrementUnit"};  ///< unit of `TimeIncrement`

  Field::Object<Reference> PixelsContent{Pixels, "", Json::Object()};  ///< the child elements of "ome:Pixels"
  Field::Object<Reference> MetadataOnly{PixelsContent, "ome:MetadataOnly", Json::Object()};  ///< says that no samples follow
  List<Ome::Channel<Reference>> Channel{PixelsContent, "ome:Channel"};  ///< all channels
  List<Ome::Plane<Reference>> Plane{PixelsContent, "ome:Plane"};  ///< all planes
  // clang-format on
};

extern template class VRELIO_EXPORT List<Channel<Json::SignalingReference>>;
extern template class VRELIO_EXPORT List<Plane<Json::SignalingReference>>;
extern template class VRELIO_EXPORT Image<Json::SignalingReference>;

}  // namespace Ome
