// What fields may hold, and what their listeners receive. A rule raises "bad cast" for a value that is
// not null and breaks it; it may bring one that keeps it to another kind.
#pragma once

#include <vrelio/ome/fields.h>

#include <string>

#include "ome/names_internal.h"

namespace Ome::Field::Rule {

// Where a native form stands that is not part of the node.
union Scratch {
  int index;
  double number;
};

// The native form is the content of the node.
template <class T>
struct Held {
  static void check(const Json::Value& value) { value.get<T>(); }
  static const void* native(const Json::Value& value, Scratch&) {
    return value.is_null() ? nullptr : &value.get<T>();
  }
};

using Find = int (*)(const std::string& text);

// A text from a list.
template <Find find>
struct Listed : Held<std::string> {
  static void check(const Json::Value& value) {
    if (find(value.get<std::string>()) < 0) throw Json::BadCast();
  }
};

// A text from a list; the native form is its position.
template <Find find>
struct Enumerated : Listed<find> {
  static const void* native(const Json::Value& value, Scratch& scratch) {
    scratch.index = value.is_null() ? -1 : find(value.get<std::string>());
    return &scratch.index;
  }
};

struct String : Held<std::string> {};

struct Uuid : Held<std::string> {
  static void check(const Json::Value& value);
};

struct DateTime : Held<std::string> {
  static void check(const Json::Value& value);
};

struct Bool : Held<bool> {};

struct Int : Held<int> {};

struct NonNegativeInt : Held<int> {
  static void check(const Json::Value& value);
};

struct PositiveInt : Held<int> {
  static void check(const Json::Value& value);
};

struct Float {
  static void check(const Json::Value& value);
  static const void* native(const Json::Value& value, Scratch& scratch);
};

struct PositiveFloat : Held<double> {
  static void check(Json::Value& value);
};

struct PercentFraction : Held<double> {
  static void check(Json::Value& value);
};

struct UnitsLength : Listed<find_length_unit> {};
struct UnitsTime : Listed<find_time_unit> {};
struct UnitsPower : Listed<find_power_unit> {};
struct IlluminationType : Enumerated<find_illumination_type> {};
struct AcquisitionMode : Enumerated<find_acquisition_mode> {};
struct ContrastMethod : Enumerated<find_contrast_method> {};
struct DimensionOrder : Enumerated<find_dimension_order> {};
struct PixelType : Enumerated<find_pixel_type> {};

}  // namespace Ome::Field::Rule
