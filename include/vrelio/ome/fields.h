// The fields of the OME views: a reference to a node of the tree, and the rule of what it may hold.
// docs/ome.md shows the tree and has the lists of units and names.
#pragma once

#include <vrelio/export.h>
#include <vrelio/json/value.h>
#include <vrelio/ome/reference.h>
#include <vrelio/ome/remains.h>

namespace Ome {

template <class T>
class List;

namespace Field {

template <class Reference, class Rule>
class Ruled;

/// An element of the document, or the content of one: a map, or null.
///
/// `object = value` is the signalling assignment that all fields have. Under an object that other fields
/// are bound to, their nodes stay where they are: entries of the new map are assigned to those of the
/// same key, at any depth and without the rules of the fields below, and the others become null; so null
/// makes all of them null and leaves the map. Arrays are assigned item by item. What is taken out of the
/// tree, surplus items for instance, is kept for the views that it has. An assignment that changes
/// nothing in this way is none.
///
/// A listener receives the `Json::Object`; null is made a map for it.
template <class Reference>
class Object : public Reference {
 public:
  /// The object that `viewed` is.
  /// \param[in] viewed   null or a map; has to outlive the object.
  /// \param[in] initial  assigned at once unless it is null.
  /// \param[in] remains  where values go that later assignments take out of the tree.
  /// \throws Json::BadCast "bad cast" if `viewed` or `initial` is neither null nor a map.
  Object(Json::Value& viewed, Json::Value initial, const Remains& remains);
  /// The object under a key of another one.
  /// \param[in] parent   what has the key; has to outlive the object.
  /// \param[in] key      the key.
  /// \param[in] initial   what a null entry becomes.
  /// \throws Json::BadCast "bad cast" if the entry is neither null nor a map.
  Object(Object& parent, const char* key, Json::Value initial = {});
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  /// Assign a map, or null, as the class describes, and tell the listener unless nothing changes.
  /// \throws Json::BadCast "bad cast" if `value` is neither null nor a map; then nothing has changed.
  Object& operator=(Json::Value value);

  /// Where values go that assignments take out of the tree.
  const Remains& remains() const noexcept { return remains_; }

 private:
  template <class, class>
  friend class Ruled;
  template <class>
  friend class Ome::List;

  // The entry under a key, created null if absent. A field refers to it from now on.
  Json::Value& bind(const char* key);

  Remains remains_;
  bool is_bound_ = false;
};

/// A field of one value, which is null or fits a rule.
///
/// `field = value` is the signalling assignment: what equals the present value is left alone; what breaks
/// the rule raises "bad cast" and changes nothing; all else is stored and shown to the listener. A value
/// that is no number breaks every rule that compares.
template <class Reference, class Rule>
class Ruled : public Reference {
 public:
  /// The field under a key of an object.
  /// \param[in] parent   what has the key; has to outlive the field.
  /// \param[in] key      the key.
  /// \param[in] initial   what a null entry becomes.
  /// \throws Json::BadCast "bad cast" if the entry breaks the rule.
  Ruled(Object<Reference>& parent, const char* key, Json::Value initial = {});
  Ruled(const Ruled&) = delete;
  Ruled& operator=(const Ruled&) = delete;
  /// Assign a value, and tell the listener unless it is equal to the present one.
  /// \throws Json::BadCast "bad cast" if the value breaks the rule; then nothing has changed.
  Ruled& operator=(Json::Value value);
};

/// The rules, known to the library alone.
namespace Rule {
// NOLINTBEGIN(bugprone-forward-declaration-namespace): names of fields and of rules agree
struct VRELIO_EXPORT String;
struct VRELIO_EXPORT Uuid;
struct VRELIO_EXPORT DateTime;
struct VRELIO_EXPORT Bool;
struct VRELIO_EXPORT Int;
struct VRELIO_EXPORT NonNegativeInt;
struct VRELIO_EXPORT PositiveInt;
struct VRELIO_EXPORT Float;
struct VRELIO_EXPORT PositiveFloat;
struct VRELIO_EXPORT PercentFraction;
struct VRELIO_EXPORT UnitsLength;
struct VRELIO_EXPORT UnitsTime;
struct VRELIO_EXPORT UnitsPower;
struct VRELIO_EXPORT IlluminationType;
struct VRELIO_EXPORT AcquisitionMode;
struct VRELIO_EXPORT ContrastMethod;
struct VRELIO_EXPORT DimensionOrder;
struct VRELIO_EXPORT PixelType;
// NOLINTEND(bugprone-forward-declaration-namespace)
}  // namespace Rule

/// Any string. A listener receives the `std::string`, or a null pointer for null.
template <class Reference>
using String = Ruled<Reference, Rule::String>;

/// A string of which the text from the tenth character on, behind "urn:uuid:", is a UUID with or without
/// braces and not the null UUID; what the first nine characters are does not matter. A listener receives
/// the `std::string`, or a null pointer for null.
template <class Reference>
using Uuid = Ruled<Reference, Rule::Uuid>;

/// A string that is an ISO 8601 date and time, for instance "2015-01-31T12:00:00", with or without a time
/// zone. A listener receives the `std::string`, or a null pointer for null.
template <class Reference>
using DateTime = Ruled<Reference, Rule::DateTime>;

/// A boolean. A listener receives the `bool`, or a null pointer for null.
template <class Reference>
using Bool = Ruled<Reference, Rule::Bool>;

/// An integer. A listener receives the `int`, or a null pointer for null.
template <class Reference>
using Int = Ruled<Reference, Rule::Int>;

/// An integer from 0 on; a listener receives what that of an `Int` does.
template <class Reference>
using NonNegativeInt = Ruled<Reference, Rule::NonNegativeInt>;

/// An integer from 1 on; a listener receives what that of an `Int` does.
template <class Reference>
using PositiveInt = Ruled<Reference, Rule::PositiveInt>;

/// A decimal or an integer. A listener receives it as a `double`, or a null pointer for null.
template <class Reference>
using Float = Ruled<Reference, Rule::Float>;

/// A decimal above 0; an integer becomes a decimal. A listener receives the `double`, or a null pointer
/// for null.
template <class Reference>
using PositiveFloat = Ruled<Reference, Rule::PositiveFloat>;

/// A decimal from 0 to 1, both included; an integer becomes a decimal. A listener receives the `double`,
/// or a null pointer for null.
template <class Reference>
using PercentFraction = Ruled<Reference, Rule::PercentFraction>;

/// One of the 34 length units. A listener receives the `std::string`, or a null pointer for null.
template <class Reference>
using UnitsLength = Ruled<Reference, Rule::UnitsLength>;

/// One of the 24 time units. A listener receives the `std::string`, or a null pointer for null.
template <class Reference>
using UnitsTime = Ruled<Reference, Rule::UnitsTime>;

/// One of the 21 power units. A listener receives the `std::string`, or a null pointer for null.
template <class Reference>
using UnitsPower = Ruled<Reference, Rule::UnitsPower>;

/// One of 5 names, "Transmitted" first. A listener receives the position among them as an `int`, -1 for
/// null.
template <class Reference>
using IlluminationType = Ruled<Reference, Rule::IlluminationType>;

/// One of 20 names, "WideField" first. A listener receives the position among them as an `int`, -1 for
/// null.
template <class Reference>
using AcquisitionMode = Ruled<Reference, Rule::AcquisitionMode>;

/// One of 9 names, "Brightfield" first. A listener receives the position among them as an `int`, -1 for
/// null.
template <class Reference>
using ContrastMethod = Ruled<Reference, Rule::ContrastMethod>;

/// A name of `Ome::DimensionOrder`. A listener receives the value of the enumeration as an `int`, -1 for
/// null.
template <class Reference>
using DimensionOrder = Ruled<Reference, Rule::DimensionOrder>;

/// A name of `Ome::Type`. A listener receives the value of the enumeration as an `int`, -1 for null.
template <class Reference>
using PixelType = Ruled<Reference, Rule::PixelType>;

extern template class VRELIO_EXPORT Object<Json::SignalingReference>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::String>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::Uuid>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::DateTime>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::Bool>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::Int>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::NonNegativeInt>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::PositiveInt>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::Float>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::PositiveFloat>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::PercentFraction>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::UnitsLength>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::UnitsTime>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::UnitsPower>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::IlluminationType>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::AcquisitionMode>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::ContrastMethod>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::DimensionOrder>;
extern template class VRELIO_EXPORT Ruled<Json::SignalingReference, Rule::PixelType>;

}  // namespace Field
}  // namespace Ome
