// Property trees as XML; docs/property_xml.md describes the documents.
#pragma once

#include <vrelio/export.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_visitor.h>

#include <string>
#include <vector>

namespace Vrel::detail {
class Xml_element;
}

/// Forms of documents.
enum vrel_xml_format : int {
  vrel_xml_any = 0,   ///< whichever a document says it has; for reading only
  vrel_xml_data = 1,  ///< an element `LVData` around the value
  vrel_xml_root = 2,  ///< an element `root`, which is the value
  vrel_xml_text = 3   ///< the text of one value alone; for writing only
};

/// Write a value as XML.
///
/// \param[out] out  takes the text; after an error it is as it was.
/// \param value  numbers, bools, texts, structs and arrays of them, at most 256 elements deep. The names of
///   fields are names in XML, and none has a dot that is not meant to make a path when it is read.
/// \param flags  a `vrel_xml_format` in its low 16 bits. Any other gives an empty document.
/// \throws VrelError (-1) "Type unknown or incompatible with xml export!" for RGB; "Text cannot be written as
///   XML!" for a character that XML cannot hold; "Field name '%s' cannot be written as XML!"; "Property tree
///   too deep!"; "Invalid size vector in property array!" for a stored shape that fits nothing; "Error
///   writing XML properties to string:\n%s", which with `vrel_xml_text` is raised for a value that has no
///   text.
///
/// Intended: arrays of texts are marked by bit 0 of their `userbits`, also in `value`;
/// PropXmlTest.WritingMarksAnArrayOfTexts.
VRELIO_EXPORT void vrel_export_xml(std::string& out, const VProp& value, int flags);

/// Read a value from XML.
///
/// The XML library of the process (TinyXML) keeps white space from then on.
///
/// \param xml  at most 64 MiB of UTF-8, with at most 256 elements in each other, and at most 65536 elements
///   and one for each 16 bytes. Reading takes up to some 30 times its size in memory.
/// \param[in,out] value  takes what is read; it should be empty. Numbers and texts replace those of their
///   kind, arrays of numbers with shape and `userbits`; fields are added to a struct. Elements are added to
///   an array of texts, values or structs, and refused unless there are as many as the document's shape has
///   then, so that an array of structs has to be empty. A value of another kind is refused. After an error
///   it may be filled in part.
/// \param flags  a `vrel_xml_format` in its low 16 bits; `vrel_xml_any` needs a document that tells its form,
///   and no other may contradict one.
/// \throws VrelError (-1) "Error parsing XML properties:\n%s" for what is no such document; the errors of the
///   form, and those of a value followed by "\nLocation:\n" and the path of its element, such as
///   `/root/item[2]/x`; docs/errors.md has them all.
VRELIO_EXPORT void vrel_import_xml(const std::string& xml, VProp& value, int flags);

// It is destroyed as what it is.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// Makes elements of the values that it visits.
class VRELIO_EXPORT VPropXmlExport : public VPropVisitor {
 public:
  using VPropVisitor::visit;
  using VPropVisitor::visit_exit;

  /// \param format_wanted  a `vrel_xml_format`; it decides how deep a tree may be.
  explicit VPropXmlExport(int format_wanted);
  ~VPropXmlExport();
  VPropXmlExport(const VPropXmlExport&) = delete;
  VPropXmlExport& operator=(const VPropXmlExport&) = delete;

  /// Make an element below the open one.
  /// \throws VrelError "Internal error!" (-1) if no element is open.
  bool visit(const VPropstring& text) override;
  /// Open an element.
  int visit(const VProp& value) override;
  /// Close an element; the outermost one stays.
  /// \throws VrelError "Internal error!" (-1) if no element is open.
  bool visit_exit(const VProp& value) override;

  /// Take the outermost element when the walk is done.
  /// \throws VrelError "Internal error!" (-1) if there is none, or another one is still open.
  Vrel::detail::Xml_element take_element();

 private:
  Vrel::detail::Xml_element make_element(unsigned int place) const;
  void check_open() const;
  void check_depth_of_elements() const;

  std::vector<Vrel::detail::Xml_element> elements_;
  std::string separator_ = " ";
  // Without use so far; they keep their places in the layout.
  [[maybe_unused]] int version_ = 1;
  [[maybe_unused]] int default_format_ = vrel_xml_root;
  int format_;
  [[maybe_unused]] int step_ = 1;
};

#pragma GCC diagnostic pop
