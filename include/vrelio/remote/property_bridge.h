// Carries values between property trees and JSON-like values; docs/remote.md has the rules on one page.
#pragma once

#include <vrelio/export.h>
#include <vrelio/json/value.h>
#include <vrelio/prop/prop.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace Json {

/// "No parameter 'NAME'": a program was given a parameter that it does not know. The library itself
/// raises it nowhere.
class VRELIO_EXPORT NoParameterError : public std::invalid_argument {
 public:
  /// \param name  of the parameter, as it stands in the text.
  explicit NoParameterError(const std::string& name);
  /// The same text.
  NoParameterError(const NoParameterError& other) noexcept;
  /// Take the text of `other`.
  NoParameterError& operator=(const NoParameterError& other) noexcept;
  ~NoParameterError() override;
};

/// A property as a value.
///
/// | Property | Value |
/// |---|---|
/// | integer of any width | integer |
/// | single, double | decimal |
/// | logical | boolean |
/// | char | string, in the local encoding |
/// | struct | map of its members; of two members of one name the later counts |
/// | array of these, cell array, struct array | lists in lists, see below |
///
/// The last dimension of an array is the outermost list and the first the innermost. Dimensions of one
/// element make no list: sizes (2, 1, 3) give 3 lists of 2 items. An array of one element is a list of
/// one item, whatever its rank, and one without elements an empty list.
///
/// Takes no stack in proportion to the depth of the tree.
///
/// \throws std::bad_cast "bad cast" for an integer that 32 bits with a sign do not hold.
/// \throws std::invalid_argument "Property has unsupported type", for the empty property, colours and
///   complex numbers, wherever in the tree they stand.
/// \throws VrelError "Invalid size vector in property array!" (-1) for an array that lost its shape.
VRELIO_EXPORT Value get_value(const VProp& prop);

/// Write a value into a property, which keeps its kind and, as an array, its shape.
///
/// A boolean goes into a logical property, a string in the local encoding into a char property, a number
/// into a property of any real type that holds it; single takes the nearest number that it has, and beyond
/// its range infinity. The lists of an array must have the lengths that `get_value` gives. A map changes
/// the members that it names, in the order of its keys.
///
/// An array of numbers, booleans or strings changes as a whole or not at all. In structs, cell arrays and
/// struct arrays an error leaves what was written before it. Other handles that share the tree keep their
/// values. Takes no stack in proportion to the depth of value or tree.
///
/// \return whether a boolean, a number or a string is now another.
/// \throws std::bad_cast "bad cast" for a number that the property cannot hold, for a list of another
///   length, and for an item that should be a list and is none.
/// \throws std::invalid_argument "Property has WORD type" for a value of a kind that does not go into the
///   property, null among them; "No property 'KEY'" for a key that names no member.
/// \throws std::invalid_argument "Invalid argument for property 'KEY'", a line end and the text of the
///   error, for whatever is raised below a member; with structs in each other once per key, the outermost
///   first.
/// \throws VrelError "Invalid size vector in property array!" (-1) for an array that lost its shape.
///
/// Intended: an array and a map give false, whatever they change;
/// PropertyWriteTest.AMapGivesFalseAlsoWhereItChangesMembers.
VRELIO_EXPORT bool set_value(const Value& value, VProp& prop);

/// The members of a struct as `get_value` gives them, with its errors; an empty map for a property of any
/// other kind.
VRELIO_EXPORT Map<std::string, Value> get_parameters(const VProp& prop);

/// Follow names and indices with `/` between them, such as `axes/1/label`, as far as properties go.
///
/// | Property | The path goes on |
/// |---|---|
/// | struct | in the member of the name up to the `/`; without a `/` the member is the result |
/// | cell array | in the element of the index up to the `/` |
/// | struct array | in the struct of the index up to the `/`; without a `/` the array is the result |
/// | array of real numbers, of logical or of char | the array is the result |
/// | any other, and the empty one | nowhere |
///
/// Indices are decimal digits and count elements from 0 in the order of their storage. Where an array is
/// the result, the path that is left comes with it, to be used as an index.
///
/// What the tree shares with other handles on the way to the result is copied, so that writing to the
/// result changes this tree alone.
///
/// \return the property and what is left of `path`; null and an empty text if the path leads nowhere. The
///   pointer stays valid as long as the tree is not changed above it.
///
/// Intended: an index at the end of a path has an empty path behind it, which leads nowhere in a number
/// or a text; PropertyPathTest.AnIndexAtTheEndFindsOnlyWhatAnEmptyPathLeadsOnFrom.
VRELIO_EXPORT std::pair<VProp*, std::string> find_property(VProp& prop, const std::string& path);
/// Follow a path through a tree that stays as it is; see the other form.
VRELIO_EXPORT std::pair<const VProp*, std::string> find_property(const VProp& prop,
                                                                 const std::string& path);

/// Add the entries of `source` that `target` lacks. Where both have a map under a key, the two are merged
/// in the same way; any other value of `target` stays. Takes no stack in proportion to the depth.
/// \param[in] source  no part of `target`.
/// \param[in,out] target  the map that takes the entries.
VRELIO_EXPORT void merge(const Map<std::string, Value>& source, Map<std::string, Value>& target);

}  // namespace Json
