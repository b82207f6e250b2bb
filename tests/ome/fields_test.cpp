#include <vrelio/ome/fields.h>

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <limits>
#include <string>
#include <typeinfo>
#include <vector>

#include "ome/ome_views.h"
#include "support/scoped_time_zone.h"

namespace {

namespace Field = Ome::Field;
using Json::Value;
using Object = Field::Object<Signaling>;

const double infinity = std::numeric_limits<double>::infinity();
const double not_a_number = std::numeric_limits<double>::quiet_NaN();
const std::string uuid = "12345678-9abc-def0-1234-56789abcdef0";
const std::string null_uuid = "00000000-0000-0000-0000-000000000000";

// Makes the field under the key "k" of a map, and assigns a value to it if there is one.
using Make = std::function<void(Value& map, const Value* assigned)>;

template <class T>
Make make() {
  return [](Value& map, const Value* assigned) {
    Object parent(map, Value(), Ome::Remains());
    T field(parent, "k");
    if (assigned != nullptr) field = *assigned;
  };
}

struct FieldRow {
  const char* name;
  Make make;
  std::vector<Value> accepted;
  std::vector<Value> refused;
};

// What fields accept of numbers becomes a decimal where `is_decimal` of the name holds.
const std::vector<FieldRow> field_rows = {
    {"Object",
     make<Object>(),
     {Value(Json::Object()), Value(Json::Object{{"x", Value(1)}})},
     {true, 1, 1.0, "{}", Value(Json::Array())}},
    {"String",
     make<Field::String<Signaling>>(),
     {"", "text", std::string("a\0b", 3), "\xff"},
     {true, 1, 1.5, Value(Json::Array()), Value(Json::Object())}},
    {"Uuid",
     make<Field::Uuid<Signaling>>(),
     {"urn:uuid:" + uuid, "123456789" + uuid, "urn:uuid:{" + uuid + "}",
      "urn:uuid:12345678-9ABC-DEF0-1234-56789ABCDEF0"},
     {1, true, "", "urn:uuid", "urn:uuid:", uuid, "urn:uuid:" + null_uuid,
      "urn:uuid:{" + null_uuid + "}", "urn:uuid:" + uuid + " ", "urn:uuid:" + uuid + "00",
      "urn:uuid: " + uuid, "urn:uuid:{" + uuid, "urn:uuid:" + uuid + "}", "urn:uuid:{" + uuid + ")",
      "urn:uuid:123456789abcdef0123456789abcdef0", "urn:uuid:g2345678-9abc-def0-1234-56789abcdef0",
      "urn:uuid:12345678-9abc-def0-1234_56789abcdef0", std::string(9, '\0') + "x"}},
    {"DateTime",
     make<Field::DateTime<Signaling>>(),
     {"2015-03-29T10:20:30", "2015-03-29T10:20:30.125", "2015-03-29T10:20:30Z",
      "2015-03-29T10:20:30+02:00", "2015-03-29T10:20", "2016-02-29T00:00:00", "2015-03-29"},
     {20150329, "", "now", "2015-02-29T10:20:30", "2015-13-01T10:20:30", "2015-03-29T25:00:00",
      "2015-03-29T10:61:00", "29.03.2015 10:20:30", "2015-03-29T10:20:30 ", " 2015-03-29T10:20:30",
      "2015-03-29T10:20:30ZZ", "2015-03-29T", "20150329T102030",
      std::string("2015-03-29\0T10:20:30", 20), "\xff\xfe"}},
    {"Bool",
     make<Field::Bool<Signaling>>(),
     {true, false},
     {0, 1, 1.0, "true", Value(Json::Object())}},
    {"Int",
     make<Field::Int<Signaling>>(),
     {INT_MIN, -1, 0, 1, INT_MAX},
     {1.0, true, "1", Value(Json::Array())}},
    {"NonNegativeInt",
     make<Field::NonNegativeInt<Signaling>>(),
     {0, 1, INT_MAX},
     {-1, INT_MIN, 1.0, false, "0"}},
    {"PositiveInt",
     make<Field::PositiveInt<Signaling>>(),
     {1, INT_MAX},
     {0, -1, INT_MIN, 1.0, true, "1"}},
    {"Float",
     make<Field::Float<Signaling>>(),
     {0.0, -1.5, 1e300, infinity, -infinity, 0, -7, INT_MIN},
     {true, "1.5", Value(Json::Array()), Value(Json::Object())}},
    {"PositiveFloat",
     make<Field::PositiveFloat<Signaling>>(),
     {5e-324, 1.5, infinity, 1, INT_MAX},
     {0.0, -0.0, -1.5, -infinity, not_a_number, 0, -1, INT_MIN, true, "1.5"}},
    {"PercentFraction",
     make<Field::PercentFraction<Signaling>>(),
     {0.0, -0.0, 0.5, 1.0, 0, 1},
     {1.5, -0.1, std::nextafter(1.0, 2.0), -5e-324, infinity, not_a_number, 2, -1, true, "0.5"}},
    {"UnitsLength",
     make<Field::UnitsLength<Signaling>>(),
     {"m", "\u00b5m", "\u212b", "pixel", "reference frame"},
     {"", "M", "um", "s", "micron", "m ", 1, true}},
    {"UnitsTime",
     make<Field::UnitsTime<Signaling>>(),
     {"s", "\u00b5s", "min", "d"},
     {"", "S", "us", "m", "hour", 1}},
    {"UnitsPower",
     make<Field::UnitsPower<Signaling>>(),
     {"W", "\u00b5W", "daW"},
     {"", "w", "uW", "m", 1}},
    {"IlluminationType",
     make<Field::IlluminationType<Signaling>>(),
     {"Transmitted", "Other"},
     {"", "other", "WideField", 0, true}},
    {"AcquisitionMode",
     make<Field::AcquisitionMode<Signaling>>(),
     {"WideField", "STED", "Other"},
     {"", "sted", "Phase", 0}},
    {"ContrastMethod",
     make<Field::ContrastMethod<Signaling>>(),
     {"Brightfield", "DIC", "Other"},
     {"", "dic", "STED", 0}},
    {"DimensionOrder",
     make<Field::DimensionOrder<Signaling>>(),
     {"XYZCT", "XYTZC"},
     {"", "XYZ", "xyzct", "ZYXCT", 0}},
    {"PixelType",
     make<Field::PixelType<Signaling>>(),
     {"bit", "uint16", "double-complex"},
     {"", "UINT16", "uint64", 5}}};

bool becomes_decimal(const FieldRow& row) {
  return std::string(row.name) == "PositiveFloat" || std::string(row.name) == "PercentFraction";
}

Value stored_form(const FieldRow& row, const Value& value) {
  const bool is_changed = value.kind() == Json::kind_integer && becomes_decimal(row);
  return is_changed ? Value(static_cast<double>(value.get<int>())) : value;
}

TEST(OmeFieldTest, EveryTypeIsTested) { EXPECT_EQ(field_rows.size(), 19U); }

TEST(OmeFieldTest, AFieldTakesWhatKeepsItsRule) {
  for (const FieldRow& row : field_rows) {
    for (const Value& value : row.accepted) {
      Value map;
      row.make(map, &value);
      EXPECT_EQ(map["k"], stored_form(row, value)) << row.name << " " << value;
    }
  }
}

TEST(OmeFieldTest, AFieldIsMadeOfWhatKeepsItsRule) {
  for (const FieldRow& row : field_rows) {
    for (const Value& value : row.accepted) {
      Value map;
      map["k"] = value;
      row.make(map, nullptr);
      EXPECT_EQ(map["k"], stored_form(row, value)) << row.name << " " << value;
    }
  }
}

TEST(OmeFieldTest, AFieldRefusesWhatBreaksItsRuleAndStaysAsItIs) {
  for (const FieldRow& row : field_rows) {
    for (const Value& value : row.refused) {
      SCOPED_TRACE(std::string(row.name) + " " + text_of(value));
      Value map;
      map["k"] = row.accepted.front();
      EXPECT_BAD_CAST(row.make(map, &value));
      EXPECT_EQ(map["k"], row.accepted.front());
    }
  }
}

TEST(OmeFieldTest, AFieldIsNotMadeOfWhatBreaksItsRule) {
  for (const FieldRow& row : field_rows) {
    for (const Value& value : row.refused) {
      SCOPED_TRACE(std::string(row.name) + " " + text_of(value));
      Value map;
      map["k"] = value;
      EXPECT_BAD_CAST(row.make(map, nullptr));
      EXPECT_EQ(text_of(map["k"]), text_of(value));
    }
  }
}

TEST(OmeFieldTest, EveryFieldMayBeUnset) {
  const Value nothing;
  for (const FieldRow& row : field_rows) {
    Value map;
    row.make(map, nullptr);
    EXPECT_EQ(text_of(map), R"({"k":null})") << row.name;
    row.make(map, &row.accepted.front());
    row.make(map, &nothing);
    EXPECT_EQ(text_of(map), R"({"k":null})") << row.name;
  }
}

TEST(OmeFieldTest, ANumberThatIsNoneIsAFloat) {
  Value map;
  Object parent(map, Value(), Ome::Remains());
  Field::Float<Signaling> field(parent, "k");
  field = not_a_number;
  EXPECT_TRUE(std::isnan(map["k"].get<double>()));
}

TEST(OmeFieldTest, ADefaultMakesWayForWhatIsThere) {
  Value map;
  map["set"] = 2;
  Object parent(map, Value(), Ome::Remains());
  const Field::PositiveInt<Signaling> set(parent, "set", 5);
  const Field::PositiveInt<Signaling> unset(parent, "unset", 5);
  EXPECT_EQ(text_of(map), R"({"set":2,"unset":5})");
}

TEST(OmeFieldTest, ADefaultHasToKeepTheRule) {
  Value map;
  Object parent(map, Value(), Ome::Remains());
  EXPECT_BAD_CAST(Field::PositiveInt<Signaling>(parent, "k", 0));
  EXPECT_TRUE(map["k"].is_null());
}

TEST(OmeFieldTest, AParentThatIsNoMapIsRefused) {
  for (const Value& parent_value : {Value(1), Value("text"), Value(Json::Array())}) {
    Value value = parent_value;
    EXPECT_BAD_CAST(Object(value, Value(), Ome::Remains()));
    EXPECT_EQ(value, parent_value);
  }
}

TEST(OmeFieldTest, AFieldShowsItsNode) {
  Value map;
  Object parent(map, Value(), Ome::Remains());
  Field::String<Signaling> field(parent, "k");
  EXPECT_EQ(&field.value(), &map["k"]);
  EXPECT_EQ(&parent.value(), &map);
  map["k"] = "changed from outside";
  EXPECT_EQ(field.value(), Value("changed from outside"));
}

TEST(OmeFieldTest, ALocalTimeThatTheClocksSkipIsATime) {
  const ScopedTimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
  Value map;
  Object parent(map, Value(), Ome::Remains());
  Field::DateTime<Signaling> field(parent, "k");
  field = "2015-03-29T02:30:00";
  EXPECT_EQ(map["k"], Value("2015-03-29T02:30:00"));
}

}  // namespace
