// The view of a whole OME document; docs/ome.md, "Views".
#pragma once

#include <vrelio/ome/fields.h>
#include <vrelio/ome/image.h>
#include <vrelio/ome/instrument.h>
#include <vrelio/ome/list.h>

namespace Ome {

/// The root element "ome:OME" in the map at the top of a tree, which is what `Json::write_xml` writes.
template <class Reference>
class Document {
 public:
  /// What the fields are.
  using reference = Reference;

  /// View the tree `value`, which has to outlive the view.
  /// \param[in] value    not null; a null value or a map.
  /// \param[in] initial  assigned to the root element at first, unless it is null.
  /// \param[in] number   without meaning, since a document has no ID.
  /// \param[in] remains  where values go that later assignments take out of the tree.
  /// \throws Json::BadCast "bad cast" if anything in the tree breaks the rule of its field.
  explicit Document(Json::Value* value, Json::Value initial = {}, unsigned int number = 0,
                    const Remains& remains = Remains());

  // clang-format off
  Field::Object<Reference> OME;  ///< the root element

  Field::String<Reference> xmlns_ome{OME, "xmlns:ome", "http://www.openmicroscopy.org/Schemas/OME/2015-01"};  ///< the schema's namespace
  Field::String<Reference> xmlns_xsi{OME, "xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance"};  ///< the namespace of `xsi_schemaLocation`
  Field::String<Reference> xsi_schemaLocation{OME, "xsi:schemaLocation", "http://www.openmicroscopy.org/Schemas/OME/2015-01 http://www.openmicroscopy.org/Schemas/OME/2015-01/ome.xsd"};  ///< namespace and place of the schema
  Field::Uuid<Reference> UUID{OME, "UUID"};  ///< "urn:uuid:" and the UUID of the document
  Field::String<Reference> Creator{OME, "Creator"};  ///< name of the program that made it

  Field::Object<Reference> Content{OME, "", Json::Object()};  ///< the child elements
  List<Ome::Instrument<Reference>> Instrument{Content, "ome:Instrument"};  ///< all instruments
  List<Ome::Image<Reference>> Image{Content, "ome:Image"};  ///< all images
  // clang-format on
};

extern template class VRELIO_EXPORT List<Instrument<Json::SignalingReference>>;
extern template class VRELIO_EXPORT List<Image<Json::SignalingReference>>;
extern template class VRELIO_EXPORT Document<Json::SignalingReference>;

}  // namespace Ome
