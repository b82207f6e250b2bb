// What holds for all 48 kinds of values alike: they are held, copied, compared, and come back from text
// and from XML.
#include "prop/every_kind.h"

#include <gtest/gtest.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_cast.h>
#include <vrelio/prop/prop_xml.h>

#include <string>
#include <utility>

#include "support/expect_error.h"

namespace {

using namespace Vrel::testing;

constexpr int rgb_id = 0x400;
constexpr int cell_id = 0x4000;
constexpr int text_id = 0x20000;

bool is_shared(const VProp& left, const VProp& right) {
  return left.value_ptr() == right.value_ptr();
}

template <class Check>
void for_each_kind(Check check) {
  for (const Kind& kind : every_kind()) {
    SCOPED_TRACE(kind);
    check(kind);
  }
}

template <class Check>
void for_each_two_kinds(Check check) {
  for_each_kind([&check](const Kind& left) {
    for_each_kind([&check, &left](const Kind& right) { check(left, right); });
  });
}

// --- What is held

TEST(PropEveryKindTest, ThereAre48) { EXPECT_EQ(every_kind().size(), 48U); }

TEST(PropEveryKindTest, NoOtherIdHasAType) {
  constexpr int flags[] = {0, 0x40000000, Vrel::prop_array_flag,
                           0x40000000 | Vrel::prop_array_flag};
  int count = 0;
  for (const int flag : flags) {
    for (int bit = 0; bit < 20; ++bit) {
      const int id = flag | 1 << bit;
      const int element = id & ~Vrel::prop_array_flag;
      const bool is_never_held =
          id == 0x4000 || element == 2048 || id == (rgb_id | Vrel::prop_array_flag);
      if (*vrel_dt_get_type(id) != typeid(void) && !is_never_held) ++count;
    }
  }
  EXPECT_EQ(count, 48);
}

TEST(PropEveryKindTest, IsHeldUnderItsIdTypeAndName) {
  for_each_kind([](const Kind& kind) {
    for (const VProp& value : {kind.plain, kind.sample}) {
      EXPECT_FALSE(value.empty());
      EXPECT_EQ(value.get_id(), kind.id);
      EXPECT_EQ(value.type(), *kind.type);
      EXPECT_EQ(*vrel_dt_get_type(value.get_id()), *kind.type);
      EXPECT_EQ(vrel_dt_get_name(value.get_id()), kind.name);
    }
  });
}

TEST(PropEveryKindTest, IsReachedByItsType) {
  for_each_kind([](const Kind& kind) {
    EXPECT_EQ(kind.read(kind.sample), kind.sample.value_ptr());
    VProp value(kind.sample);
    const void* const written = kind.write(value);
    EXPECT_EQ(written, std::as_const(value).value_ptr());
    EXPECT_EQ(value, kind.sample);
  });
}

TEST(PropEveryKindTest, IsReachedByNoOtherType) {
  for_each_two_kinds([](const Kind& held, const Kind& asked) {
    if (held.id == asked.id) return;
    const std::string message =
        "Type mismatch: found " + full_name(held) + ", expected " + full_name(asked);
    VProp value(held.sample);
    EXPECT_VREL_ERROR(asked.read(value), message, -1);
    EXPECT_VREL_ERROR(asked.write(value), message, -1);
    EXPECT_EQ(value, held.sample);
  });
}

TEST(PropEveryKindTest, IsMadeByMutableAccessToNothing) {
  for_each_kind([](const Kind& kind) {
    VProp value;
    const void* const written = kind.write(value);
    EXPECT_EQ(written, std::as_const(value).value_ptr());
    EXPECT_EQ(value, kind.plain);
  });
}

TEST(PropEveryKindTest, IsAnArrayByItsId) {
  for_each_kind([](const Kind& kind) {
    const VProparrayBase* const array = kind.sample.get_arr(false);
    EXPECT_EQ(array == nullptr ? 0U : array->count(), kind.is_array ? 2U : 0U);
  });
}

// --- Through copy, compare, text and XML

void expect_copies(const Kind& kind) {
  VProp copy(kind.sample);
  EXPECT_TRUE(is_shared(copy, kind.sample));
  copy.own();
  EXPECT_FALSE(is_shared(copy, kind.sample));
  EXPECT_EQ(copy.type(), *kind.type);
  EXPECT_EQ(copy, kind.sample);
  copy = kind.changed;
  EXPECT_NE(copy, kind.sample);
}

void expect_equal_to_its_like_alone(const Kind& kind) {
  EXPECT_EQ(kind.sample, kind.sample);
  EXPECT_NE(kind.sample, kind.changed);
  EXPECT_NE(kind.sample, kind.plain);
  EXPECT_NE(kind.sample, VProp());
  for (const Kind& other : every_kind()) {
    EXPECT_EQ(kind.sample == other.sample, kind.id == other.id) << other;
    EXPECT_EQ(kind.plain == other.plain, kind.id == other.id) << other;
  }
}

void expect_text_and_back(const Kind& kind) {
  std::string text = kind.text;
  if (!text.empty()) {
    EXPECT_EQ(vrel_val2string(kind.sample), kind.text);
    const VProp back = vrel_string2val(text, kind.id);
    EXPECT_EQ(back, kind.sample);
    EXPECT_EQ(back.type(), *kind.type);
  } else {
    EXPECT_VREL_ERROR(vrel_val2string(kind.sample), "Conversion of unknown type to string!", -1);
    EXPECT_VREL_ERROR(vrel_string2val(text, kind.id), "Conversion of string to invalid type!", -1);
  }
}

std::string written(const VProp& value, int format) {
  std::string xml;
  vrel_export_xml(xml, value, format);
  return xml;
}

VProp read(const std::string& xml, int format) {
  VProp value;
  vrel_import_xml(xml, value, format);
  return value;
}

// Texts of an array are cells with a mark.
std::string xml_attributes(const Kind& kind) {
  const bool is_text_array = kind.is_array && kind.name == "char";
  const std::string bits =
      kind.is_array ? std::string("userbits=\"") + (is_text_array ? '1' : '0') + "\" " : "";
  const bool has_two = kind.is_array || kind.id == text_id;
  return " idx=\"1\" " + bits + "type=\"" + (is_text_array ? "cell" : kind.name) + "\" size=\"1 " +
         (has_two ? '2' : '1') + '"';
}

std::string xml_content(const Kind& kind) {
  constexpr const char* number = R"(type="int32" size="1 1">)";
  if (!kind.text.empty()) return kind.text;
  if (kind.name == "char") {
    return "<item idx=\"0\" type=\"char\" size=\"1 2\">1\xC2\xB5</item>"
           "<item idx=\"1\" type=\"char\" size=\"1 0\"></item>";
  }
  if (kind.id == (cell_id | Vrel::prop_array_flag)) {
    return R"(<item idx="1" )" + std::string(number) + "1</item>" +
           R"(<item idx="2" isempty="1" type="cell" size="0 0" />)";
  }
  const std::string first = R"(<a idx="1" )" + std::string(number) + "1</a>";
  return kind.is_array ? first + R"(<a idx="2" )" + number + "1</a>" : first;
}

std::string root_document(const Kind& kind) {
  return "<root" + xml_attributes(kind) + " vprop_version=\"1\">" + xml_content(kind) + "</root>";
}

std::string data_document(const Kind& kind) {
  const std::string name = "DefaultValueCausedByCreatingAnElementWithNoParameters";
  return "<?xml version=\"1.0\" standalone=\"yes\" ?><LVData><Version>8.2.1</Version><" + name +
         xml_attributes(kind) + ">" + xml_content(kind) + "</" + name + "></LVData>";
}

void expect_xml_and_back(const Kind& kind, int format, const std::string& document) {
  const std::string xml = written(kind.sample, format);
  EXPECT_EQ(xml, document);
  for (const int read_as : {format, static_cast<int>(vrel_xml_any)}) {
    const VProp back = read(xml, read_as);
    EXPECT_EQ(back, kind.sample);
    EXPECT_EQ(back.type(), *kind.type);
    EXPECT_EQ(written(back, format), xml);
  }
}

void expect_both_envelopes_and_back(const Kind& kind) {
  if (kind.id != rgb_id) {
    expect_xml_and_back(kind, vrel_xml_root, root_document(kind));
    expect_xml_and_back(kind, vrel_xml_data, data_document(kind));
    return;
  }
  constexpr const char* message = "Type unknown or incompatible with xml export!";
  EXPECT_VREL_ERROR(written(kind.sample, vrel_xml_root), message, -1);
  EXPECT_VREL_ERROR(written(kind.sample, vrel_xml_data), message, -1);
}

TEST(PropEveryKindTest, GoesThroughCopyCompareTextAndBothXmlFormsAndBack) {
  for_each_kind([](const Kind& kind) {
    expect_copies(kind);
    expect_equal_to_its_like_alone(kind);
    expect_text_and_back(kind);
    expect_both_envelopes_and_back(kind);
  });
}

TEST(PropEveryKindTest, AnArrayComesBackFromXmlWithItsShapeAndBits) {
  for_each_kind([](const Kind& kind) {
    if (!kind.is_array) return;
    VProp value(kind.sample);
    value.own();
    value.get_arr(true)->set_size({2, 1}, VProparrayBase::set_mode_checked);
    value.get_arr(true)->userbits = kind.name == "cell" ? 6 : 7;
    for (const int format : {vrel_xml_root, vrel_xml_data}) {
      const VProp back = read(written(value, format), format);
      EXPECT_EQ(back, value);
      EXPECT_EQ(back.get_arr(true)->get_size(true), (VProparrayBase::index_list{2, 1}));
      EXPECT_EQ(back.get_arr(true)->userbits, value.get_arr(true)->userbits);
    }
  });
}

}  // namespace
