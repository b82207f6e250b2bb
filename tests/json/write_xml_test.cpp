#include <gtest/gtest.h>
#include <vrelio/json/write_xml.h>

#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

using Json::Array;
using Json::Object;
using Json::Value;
using Json::write_xml;

const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

// What follows the declaration.
std::string written(const Value& value) {
  std::ostringstream out;
  write_xml(value, out);
  EXPECT_EQ(out.str().substr(0, declaration.size()), declaration);
  return out.str().substr(declaration.size());
}

std::string written_as_text(const Value& text) { return written(Object{{"a", text}}); }

template <class Error>
std::string failure_of(const Value& value) {
  std::ostringstream out;
  try {
    write_xml(value, out);
  } catch (const Error& error) {
    return error.what();
  }
  return "no failure";
}

TEST(WriteXmlTest, NullIsADocumentWithoutElements) { EXPECT_EQ(written(Value()), ""); }

TEST(WriteXmlTest, AnEmptyMapIsADocumentWithoutElements) { EXPECT_EQ(written(Object()), ""); }

TEST(WriteXmlTest, AValueThatIsNeitherMapNorNullIsRefusedBeforeAnythingIsWritten) {
  for (const Value& value : {Value(true), Value(1), Value(1.5), Value("text"), Value(Array())}) {
    std::ostringstream out;
    try {
      write_xml(value, out);
      FAIL() << value;
    } catch (const std::bad_cast& error) {
      EXPECT_STREQ(error.what(), "bad cast");
    }
    EXPECT_EQ(out.str(), "");
  }
}

TEST(WriteXmlTest, AScalarIsTheTextOfItsElement) {
  EXPECT_EQ(written_as_text(true), "<a>true</a>");
  EXPECT_EQ(written_as_text(false), "<a>false</a>");
  EXPECT_EQ(written_as_text(-12), "<a>-12</a>");
  EXPECT_EQ(written_as_text(std::numeric_limits<int>::min()), "<a>-2147483648</a>");
  EXPECT_EQ(written_as_text("some text"), "<a>some text</a>");
}

TEST(WriteXmlTest, ADecimalWithoutAFractionHasOneDecimalPlace) {
  EXPECT_EQ(written_as_text(3.0), "<a>3.0</a>");
  EXPECT_EQ(written_as_text(1e15), "<a>1000000000000000.0</a>");
}

TEST(WriteXmlTest, ADecimalWithAFractionHasUpToTenDigits) {
  EXPECT_EQ(written_as_text(0.1), "<a>0.1</a>");
  EXPECT_EQ(written_as_text(1234567.891), "<a>1234567.891</a>");
  EXPECT_EQ(written_as_text(1.0 / 3.0), "<a>0.3333333333</a>");
  EXPECT_EQ(written_as_text(1.25e-9), "<a>1.25e-09</a>");
}

TEST(WriteXmlTest, NeitherFormatNorLocaleOfTheStreamHasInfluence) {
  struct Comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  std::ostringstream out;
  out.imbue(std::locale(std::locale::classic(), new Comma));
  out << std::hex << std::showpos << std::fixed << std::setprecision(3);
  const std::ios::fmtflags flags = out.flags();
  write_xml(Object{{"a", Object{{"i", 123456}, {"d", 1234.5}}}}, out);
  EXPECT_EQ(out.str(), declaration + "<a d=\"1234.5\" i=\"123456\"/>");
  EXPECT_EQ(out.flags(), flags);
  EXPECT_EQ(out.precision(), 3);
}

TEST(WriteXmlTest, TheFiveSpecialCharactersAreEscapedInText) {
  EXPECT_EQ(written_as_text("<>&'\""), "<a>&lt;&gt;&amp;&apos;&quot;</a>");
  EXPECT_EQ(written_as_text("a<b>c&d'e\"f"), "<a>a&lt;b&gt;c&amp;d&apos;e&quot;f</a>");
}

TEST(WriteXmlTest, TheFiveSpecialCharactersAreEscapedInAttributes) {
  EXPECT_EQ(written(Object{{"a", Object{{"x", "<>&'\""}}}}),
            "<a x=\"&lt;&gt;&amp;&apos;&quot;\"/>");
}

TEST(WriteXmlTest, EveryOtherByteStaysAsItIs) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    if (std::string("<>&'\"").find(c) == std::string::npos) bytes += c;
  }
  EXPECT_EQ(written_as_text(bytes), "<a>" + bytes + "</a>");
}

TEST(WriteXmlTest, NamesAreWrittenAsTheyAre) {
  EXPECT_EQ(written(Object{{"a<b", Object{{"&", 1}, {"", 2}}}}), "<a<b &=\"1\">2</a<b>");
  EXPECT_EQ(written(Object{{"", 1}}), "<>1</>");
}

TEST(WriteXmlTest, NullAndAnEmptyStringAreNoElement) {
  EXPECT_EQ(written(Object{{"a", Value()}, {"b", ""}, {"c", 1}}), "<c>1</c>");
  EXPECT_EQ(written(Object{{"a", Array{Value(), 1, "", 2}}}), "<a>1</a><a>2</a>");
}

TEST(WriteXmlTest, AMapWithoutContentIsAnEmptyElement) {
  EXPECT_EQ(written_as_text(Object()), "<a/>");
  EXPECT_EQ(written_as_text(Object{{"", Value()}}), "<a/>");
  EXPECT_EQ(written_as_text(Object{{"x", 1}}), "<a x=\"1\"/>");
  EXPECT_EQ(written_as_text(Object{{"", Value()}, {"x", 1}}), "<a x=\"1\"/>");
}

TEST(WriteXmlTest, AnEmptyStringAsContentGivesBothTags) {
  EXPECT_EQ(written_as_text(Object{{"", ""}}), "<a></a>");
  EXPECT_EQ(written_as_text(Object{{"", ""}, {"x", 1}}), "<a x=\"1\"></a>");
}

TEST(WriteXmlTest, AMapWithoutChildrenAsContentGivesBothTags) {
  EXPECT_EQ(written_as_text(Object{{"", Object()}}), "<a></a>");
  EXPECT_EQ(written_as_text(Object{{"", Object{{"b", Value()}}}}), "<a></a>");
}

TEST(WriteXmlTest, AttributesStandInTheOrderOfTheirKeys) {
  EXPECT_EQ(written(Object{{"a", Object{{"y", 2}, {"x", true}, {"z", 0.5}, {"", "text"}}}}),
            "<a x=\"true\" y=\"2\" z=\"0.5\">text</a>");
}

TEST(WriteXmlTest, ANullAttributeIsLeftOutAndAnEmptyOneIsWritten) {
  EXPECT_EQ(written_as_text(Object{{"x", Value()}, {"y", ""}}), "<a y=\"\"/>");
}

TEST(WriteXmlTest, ChildrenStandInTheOrderOfTheirKeys) {
  EXPECT_EQ(written_as_text(Object{{"", Object{{"c", 1}, {"b", Object{{"", Object{{"d", 2}}}}}}}}),
            "<a><b><d>2</d></b><c>1</c></a>");
}

TEST(WriteXmlTest, AnArrayIsAnElementPerItem) {
  EXPECT_EQ(written(Object{{"a", Array{1, Object{{"x", 2}, {"", 3}}, "t"}}, {"b", 4}}),
            "<a>1</a><a x=\"2\">3</a><a>t</a><b>4</b>");
  EXPECT_EQ(written_as_text(Array()), "");
}

TEST(WriteXmlTest, AnArrayOrAMapAsAttributeIsRefused) {
  for (const Value& attribute : {Value(Array()), Value(Array{1}), Value(Object())}) {
    EXPECT_EQ(failure_of<std::invalid_argument>(Object{{"a", Object{{"x", attribute}}}}),
              "No xml attribute");
  }
}

TEST(WriteXmlTest, AnArrayAsContentIsRefused) {
  EXPECT_EQ(failure_of<std::invalid_argument>(Object{{"a", Object{{"", Array{1}}}}}),
            "No xml content");
}

TEST(WriteXmlTest, AnArrayInAnArrayIsRefused) {
  EXPECT_EQ(failure_of<std::invalid_argument>(Object{{"a", Array{1, Array{2}}}}), "No xml content");
}

TEST(WriteXmlTest, DepthIsBoundedByMemoryAlone) {
  constexpr int depth = 1000000;
  Value value(1);
  for (int i = 0; i < depth; ++i) {
    Object content;
    content.emplace("a", std::move(value));
    Object element;
    element.emplace("", std::move(content));
    value = Value(std::move(element));
  }
  std::ostringstream out;
  write_xml(value.map().at(""), out);
  const std::string text = out.str();
  EXPECT_EQ(text.size(), declaration.size() + 7 * depth + 1);
  EXPECT_EQ(text.substr(declaration.size(), 6), "<a><a>");
  EXPECT_EQ(text.substr(text.size() - 8), "</a></a>");
}

}  // namespace
