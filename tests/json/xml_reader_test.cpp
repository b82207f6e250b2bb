#include <vrelio/json/xml_reader.h>

#include <gtest/gtest.h>
#include <vrelio/json/write_xml.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>

#include "json/xml_outcome.h"

namespace {

using Json::Array;
using Json::Object;
using Json::Value;
using Json::XmlReader;
using Vrel::testing::read_from_stream;
using Vrel::testing::read_in_slices;
using Vrel::testing::read_whole;
using Vrel::testing::XmlOutcome;

// Reads a text in all ways, which have to agree.
XmlOutcome outcome_of(const std::string& text) {
  XmlOutcome whole = read_whole(text);
  EXPECT_EQ(read_in_slices(text, [](std::size_t) { return std::size_t{1}; }), whole)
      << "byte by byte: " << text;
  for (std::size_t cut = 1; cut < text.size(); ++cut) {
    const auto size = [&](std::size_t taken) { return taken < cut ? cut - taken : text.size(); };
    EXPECT_EQ(read_in_slices(text, size), whole) << "cut at " << cut << ": " << text;
  }
  EXPECT_EQ(read_from_stream(text), whole) << "stream: " << text;
  return whole;
}

// The text is read to its last character, where the root element ends.
void expect_document(const std::string& text, const Value& value) {
  const XmlOutcome outcome = outcome_of(text);
  EXPECT_EQ(outcome.error, "") << text;
  EXPECT_EQ(outcome.root, value) << text << " gives " << outcome.root;
  EXPECT_TRUE(outcome.is_closed) << text;
  EXPECT_TRUE(outcome.may_end) << text;
  EXPECT_EQ(outcome.taken, text.size()) << text;
}

// The text is read to its last character without an end of the root element.
void expect_open(const std::string& text, const Value& value, bool may_end) {
  const XmlOutcome outcome = outcome_of(text);
  EXPECT_EQ(outcome.error, "") << text;
  EXPECT_EQ(outcome.root, value) << text << " gives " << outcome.root;
  EXPECT_FALSE(outcome.is_closed) << text;
  EXPECT_EQ(outcome.may_end, may_end) << text;
}

// The last character of the text is refused.
void expect_refused(const std::string& text, const std::string& message) {
  const XmlOutcome outcome = outcome_of(text);
  EXPECT_EQ(outcome.error, message) << text;
  EXPECT_FALSE(outcome.is_closed) << text;
  EXPECT_EQ(outcome.taken, text.size()) << text;
}

// The value of a root element with this text.
Value text_value(const std::string& text) {
  const XmlOutcome outcome = outcome_of("<a>" + text + "</a>");
  EXPECT_EQ(outcome.error, "") << text;
  return outcome.root.map().at("a");
}

Value attribute_value(const std::string& text) {
  const XmlOutcome outcome = outcome_of("<a x=\"" + text + "\"/>");
  EXPECT_EQ(outcome.error, "") << text;
  return outcome.root.map().at("a").map().at("x");
}

// The same, where the spelling has the same meaning in texts and attributes.
Value typed(const std::string& text) {
  const Value value = text_value(text);
  EXPECT_EQ(attribute_value(text), value) << text;
  return value;
}

// --- The mapping

TEST(XmlReaderTest, TheRootBecomesNullFirst) {
  Value root(7);
  const XmlReader reader(root);
  EXPECT_TRUE(root.is_null());
}

TEST(XmlReaderTest, AnElementIsTheEntryOfItsName) {
  expect_document("<a>text</a>", Object{{"a", "text"}});
  expect_document("<a></a>", Object{{"a", Value()}});
}

TEST(XmlReaderTest, AnElementWithAttributesIsAMap) {
  expect_document("<a x=\"1\" y='b'></a>",
                  Object{{"a", Object{{"", Value()}, {"x", 1}, {"y", "b"}}}});
  expect_document("<a x=\"1\"/>", Object{{"a", Object{{"x", 1}}}});
  expect_document("<a x=\"1\" />", Object{{"a", Object{{"x", 1}}}});
}

TEST(XmlReaderTest, TheContentOfAnElementWithAttributesLiesUnderTheEmptyKey) {
  expect_document("<a x=\"1\">text</a>", Object{{"a", Object{{"", "text"}, {"x", 1}}}});
}

TEST(XmlReaderTest, ChildrenLieInAMapUnderTheEmptyKey) {
  expect_document("<a><b>1</b><c/></a>",
                  Object{{"a", Object{{"", Object{{"b", 1}, {"c", Value()}}}}}});
  expect_document("<a x=\"1\"><b>2</b></a>",
                  Object{{"a", Object{{"x", 1}, {"", Object{{"b", 2}}}}}});
}

TEST(XmlReaderTest, ARepeatedElementBecomesAnArray) {
  const auto children = [](const Value& value) {
    return Object{{"a", Object{{"", Object{{"b", value}}}}}};
  };
  expect_document("<a><b>1</b><b>2</b></a>", children(Array{1, 2}));
  expect_document("<a><b>1</b><b>2</b><b x=\"3\"/></a>", children(Array{1, 2, Object{{"x", 3}}}));
  expect_document("<a><b x=\"1\">s</b><b><c>2</c></b></a>",
                  children(Array{Object{{"x", 1}, {"", "s"}}, Object{{"", Object{{"c", 2}}}}}));
  expect_document("<a><b>1</b><b/><b>2</b></a>", children(Array{1, Value(), 2}));
}

TEST(XmlReaderTest, ARepeatedElementWithoutAValueStaysOne) {
  const auto children = [](const Value& value) {
    return Object{{"a", Object{{"", Object{{"b", value}}}}}};
  };
  expect_document("<a><b/><b/></a>", children(Value()));
  expect_document("<a><b></b><b></b><b></b></a>", children(Value()));
  expect_document("<a><b/><b>1</b></a>", children(1));
}

TEST(XmlReaderTest, ElementsOfTheSameNameMayLieInOneAnother) {
  expect_document(
      "<a><a><a>1</a></a><a>2</a></a>",
      Object{{"a", Object{{"", Object{{"a", Array{Object{{"", Object{{"a", 1}}}}, 2}}}}}}});
}

TEST(XmlReaderTest, TheDeclarationAndWhitespaceMayStandInFront) {
  expect_document(" \n<?xml version=\"1.0\" encoding='UTF-8'?>\r\n\t\v\f<a>1</a>",
                  Object{{"a", 1}});
  expect_document("<?xml?><a>1</a>", Object{{"a", 1}});
}

TEST(XmlReaderTest, NamesConsistOfLettersDigitsUnderscoreAndColon) {
  expect_document("<aZ:_9 x_:Y0=\"1\"/>", Object{{"aZ:_9", Object{{"x_:Y0", 1}}}});
}

TEST(XmlReaderTest, OnlyAsciiLettersAndDigitsCount) {
  expect_refused("<\xE4", "Unexpected \xE4 in tag name");
  expect_refused("<a\xE4", "Unexpected \xE4 in tag a");
  expect_refused("<a\xB2", "Unexpected \xB2 in tag a");
  expect_refused("<a \xC4", "Unexpected \xC4 in tag");
  EXPECT_EQ(text_value("\xA0text"), Value("\xA0text"));
}

// --- What texts are

TEST(XmlReaderTest, TrueAndFalseAreBooleans) {
  EXPECT_EQ(typed("true"), Value(true));
  EXPECT_EQ(typed("false"), Value(false));
}

TEST(XmlReaderTest, WhatIsMoreOrLessThanABooleanIsAString) {
  for (const char* const text : {"t", "tr", "tru", "truer", "true ", "trux", "tRue", "f", "fals",
                                 "falsee", "false\n", "falze", "True", "FALSE", "ttrue", "true1"}) {
    EXPECT_EQ(typed(text), Value(text));
  }
}

TEST(XmlReaderTest, WholeNumbersAreIntegers) {
  EXPECT_EQ(typed("12"), Value(12));
  EXPECT_EQ(typed("-12"), Value(-12));
  EXPECT_EQ(typed("0"), Value(0));
  EXPECT_EQ(typed("-0"), Value(0));
  EXPECT_EQ(typed("007"), Value(7));
  EXPECT_EQ(typed("2147483647"), Value(std::numeric_limits<int>::max()));
  EXPECT_EQ(typed("-2147483648"), Value(std::numeric_limits<int>::min()));
}

TEST(XmlReaderTest, OtherNumbersAreDecimals) {
  EXPECT_EQ(typed("12.5"), Value(12.5));
  EXPECT_EQ(typed("1e3"), Value(1000.0));
  EXPECT_EQ(typed("-1.5E-2"), Value(-0.015));
  EXPECT_EQ(typed("1.0"), Value(1.0));
  EXPECT_EQ(typed("1."), Value(1.0));
  EXPECT_EQ(typed("-.5"), Value(-0.5));
  EXPECT_EQ(typed("1e+2"), Value(100.0));
}

TEST(XmlReaderTest, ANumberBeyondTheLimitsIsTheLimit) {
  EXPECT_EQ(typed("99999999999"), Value(std::numeric_limits<int>::max()));
  EXPECT_EQ(typed("2147483648"), Value(std::numeric_limits<int>::max()));
  EXPECT_EQ(typed("-99999999999999999999999999999"), Value(std::numeric_limits<int>::min()));
  EXPECT_EQ(typed("1e999"), Value(std::numeric_limits<double>::max()));
  EXPECT_EQ(typed("-1.5e999999999999"), Value(std::numeric_limits<double>::lowest()));
  EXPECT_EQ(typed("1e-999"), Value(0.0));
}

TEST(XmlReaderTest, WhatCannotBeConvertedStaysAString) {
  for (const char* const text : {"-", "-.", "1.5e", "1e", "1e+", "-e5", "--1", "-+1"}) {
    EXPECT_EQ(typed(text), Value(text));
  }
}

TEST(XmlReaderTest, WhatIsANumberOnlyAtItsBeginningIsAString) {
  for (const char* const text : {"12 ", "1-2", "1.2.3", "1e5e", "1e5.0", "12a", "1,5", "0x10",
                                 "1 2", "12\n", "5+", "1e5 "}) {
    EXPECT_EQ(typed(text), Value(text));
  }
}

TEST(XmlReaderTest, ANumberBeginsWithADigitOrAMinus) {
  EXPECT_EQ(typed("+1"), Value("+1"));
  EXPECT_EQ(typed(".5"), Value(".5"));
  EXPECT_EQ(typed("e5"), Value("e5"));
  EXPECT_EQ(typed("inf"), Value("inf"));
  EXPECT_EQ(typed("nan"), Value("nan"));
}

TEST(XmlReaderTest, WhitespaceInFrontOfContentIsDropped) {
  EXPECT_EQ(text_value(" \t\n\v\f\r12"), Value(12));
  EXPECT_EQ(text_value("  true"), Value(true));
  EXPECT_EQ(text_value("\n text "), Value("text "));
  EXPECT_EQ(text_value("  "), Value());
}

TEST(XmlReaderTest, WhitespaceInFrontOfAnAttributeIsKept) {
  EXPECT_EQ(attribute_value(" 12"), Value(" 12"));
  EXPECT_EQ(attribute_value("\ttrue"), Value("\ttrue"));
  EXPECT_EQ(attribute_value(" "), Value(" "));
}

TEST(XmlReaderTest, AnEmptyAttributeIsAnEmptyString) {
  EXPECT_EQ(attribute_value(""), Value(""));
  expect_document("<a x=''/>", Object{{"a", Object{{"x", ""}}}});
}

TEST(XmlReaderTest, BytesOfTextsStayAsTheyAre) {
  std::string bytes = "x";
  for (int byte = 0; byte < 256; ++byte) {
    if (byte != '<' && byte != '&' && byte != '"') bytes += static_cast<char>(byte);
  }
  EXPECT_EQ(typed(bytes), Value(bytes));
}

TEST(XmlReaderTest, OnlyItsOwnQuoteEndsAnAttribute) {
  expect_document("<a x=\"i'm\" y='\"<>/'/>", Object{{"a", Object{{"x", "i'm"}, {"y", "\"<>/"}}}});
}

TEST(XmlReaderTest, AGreaterThanSignInATextIsPartOfIt) { EXPECT_EQ(typed("a>b"), Value("a>b")); }

// --- References

TEST(XmlReaderTest, TheFiveReferencesStandForTheirCharacters) {
  EXPECT_EQ(typed("x&lt;&gt;&amp;&apos;&quot;y"), Value("x<>&'\"y"));
  EXPECT_EQ(typed("a&lt;b"), Value("a<b"));
}

TEST(XmlReaderTest, AnAmpersandThatBeginsATextIsLiteral) {
  EXPECT_EQ(typed("&lt;b"), Value("&lt;b"));
  EXPECT_EQ(typed("&"), Value("&"));
  EXPECT_EQ(typed("&lt;&lt;"), Value("&lt;<"));
  EXPECT_EQ(text_value("  &amp;"), Value("&amp;"));
}

TEST(XmlReaderTest, AnAmpersandThatEndsANumberOrALiteralIsLiteral) {
  EXPECT_EQ(typed("12&lt;"), Value("12&lt;"));
  EXPECT_EQ(typed("-&lt;&gt;"), Value("-&lt;>"));
  EXPECT_EQ(typed("tr&amp;"), Value("tr&amp;"));
  EXPECT_EQ(typed("true&amp;"), Value("true&amp;"));
  EXPECT_EQ(typed("fal&amp;&amp;"), Value("fal&amp;&"));
}

TEST(XmlReaderTest, AnUnknownReferenceIsRefused) {
  expect_refused("<a>x&nbsp;", "Unexpected &nbsp; reference");
  expect_refused("<a>x&#65;", "Unexpected &#65; reference");
  expect_refused("<a>x&;", "Unexpected &; reference");
  expect_refused("<a>x&LT;", "Unexpected &LT; reference");
  expect_refused("<a x='y&lt&gt;", "Unexpected &lt&gt; reference");
}

TEST(XmlReaderTest, ADelimiterInAReferenceIsPartOfIt) {
  expect_refused("<a>x& < </a>;", "Unexpected & < </a>; reference");
  expect_open("<a>x& < </a>", Object{{"a", Value()}}, false);
}

// --- Between tags

TEST(XmlReaderTest, TextOutsideOfElementsIsRefused) {
  expect_refused("a", "Unexpected a at the beginning");
  expect_refused(" \n>", "Unexpected > at the beginning");
  expect_refused("<?xml?>x", "Unexpected x at the beginning");
  expect_refused("\xEF", "Unexpected \xEF at the beginning");
}

TEST(XmlReaderTest, TextBehindAChildIsRefused) {
  expect_refused("<a><b></b>t", "Unexpected t at the beginning");
  expect_refused("<a><b x=\"1\"/> \n-", "Unexpected - at the beginning");
}

TEST(XmlReaderTest, WhitespaceBetweenTagsIsSkipped) {
  expect_document("<a> <b>1</b>\n\t<c>2</c>\r\n</a>",
                  Object{{"a", Object{{"", Object{{"b", 1}, {"c", 2}}}}}});
}

// --- The name of a tag

TEST(XmlReaderTest, ANameBeginsWithALetter) {
  expect_refused("<1", "Unexpected 1 in tag name");
  expect_refused("<_", "Unexpected _ in tag name");
  expect_refused("< ", "Unexpected   in tag name");
  expect_refused("<>", "Unexpected > in tag name");
  expect_refused("</>", "Unexpected > in tag name");
  expect_refused("</ ", "Unexpected   in tag name");
}

TEST(XmlReaderTest, CommentsSectionsAndTypesAreRefused) {
  expect_refused("<!", "Unexpected ! in tag name");
  expect_refused("<a><!", "Unexpected ! in tag name");
}

TEST(XmlReaderTest, ATagHasOneMark) {
  expect_refused("<??", "Unexpected ? in tag name");
  expect_refused("<?/", "Unexpected / in tag name");
  expect_refused("<//", "Unexpected / in tag name");
  expect_refused("</?", "Unexpected ? in tag name");
}

TEST(XmlReaderTest, AProcessingTagIsXml) {
  expect_refused("<?foo?", "Unexpected foo processing tag");
  expect_refused("<?XML ", "Unexpected XML processing tag");
  expect_refused("<?xmls ", "Unexpected xmls processing tag");
}

TEST(XmlReaderTest, AnEndTagNamesTheOpenElement) {
  expect_refused("<a></b>", "Unexpected b end tag");
  expect_refused("<a><b></a>", "Unexpected a end tag");
  expect_refused("<a></ab>", "Unexpected ab end tag");
}

TEST(XmlReaderTest, AnEndTagNeedsAnOpenElement) {
  expect_refused("</b>", "Unexpected b end tag at the beginning");
  expect_refused("<a/></a>", "Unexpected a end tag at the beginning");
}

TEST(XmlReaderTest, TheNameIsLookedAtBeforeTheCharacterBehindIt) {
  expect_refused("<a></b!", "Unexpected b end tag");
  expect_refused("<?foo!", "Unexpected foo processing tag");
  expect_refused("<a>text<b!", "Unexpected b after value");
}

TEST(XmlReaderTest, AChildBehindATextIsRefused) {
  expect_refused("<a>text<b/", "Unexpected b after value");
  expect_refused("<a>1<b>", "Unexpected b after value");
  expect_refused("<a x=\"1\">text<b/", "Unexpected b after content");
  expect_refused("<a x=\"1\">false<b ", "Unexpected b after content");
}

TEST(XmlReaderTest, WhatMayStandBehindTheNameDependsOnTheTag) {
  expect_refused("<a!", "Unexpected ! in tag a");
  expect_refused("<a-", "Unexpected - in tag a");
  expect_refused("<abc?", "Unexpected ? in tag abc");
  expect_refused("<?xml>", "Unexpected > in tag xml");
  expect_refused("<?xml/", "Unexpected / in tag xml");
  expect_refused("<a></a/", "Unexpected / in tag a");
  expect_refused("<a></a?", "Unexpected ? in tag a");
}

TEST(XmlReaderTest, TheElementIsEnteredAlsoIfItsTagIsRefused) {
  EXPECT_EQ(outcome_of("<a!").root, Value(Object{{"a", Value()}}));
}

// --- In a tag

TEST(XmlReaderTest, WhitespaceInATagIsSkipped) {
  expect_document("<a \n x\t=\r\"1\"\vy = '2' \f></a >",
                  Object{{"a", Object{{"", Value()}, {"x", 1}, {"y", 2}}}});
  expect_document("<a >1</a>", Object{{"a", 1}});
}

TEST(XmlReaderTest, AttributesNeedNoBlankBetweenThem) {
  expect_document("<a x=\"1\"y='2'/>", Object{{"a", Object{{"x", 1}, {"y", 2}}}});
}

TEST(XmlReaderTest, WhatIsNoAttributeAndNoEndIsRefusedInATag) {
  expect_refused("<a 1", "Unexpected 1 in tag");
  expect_refused("<a =", "Unexpected = in tag");
  expect_refused("<a \"", "Unexpected \" in tag");
  expect_refused("<a ?", "Unexpected ? in tag");
  expect_refused("<?xml /", "Unexpected / in tag");
  expect_refused("<a x=\"1\"<", "Unexpected < in tag");
}

TEST(XmlReaderTest, AnEndTagHasNoAttributesAndNoSlash) {
  expect_refused("<a></a x", "Unexpected x in tag");
  expect_refused("<a></a /", "Unexpected / in tag");
  expect_refused("<a></a ?", "Unexpected ? in tag");
}

TEST(XmlReaderTest, BehindTheClosingMarkTheTagEnds) {
  expect_refused("<a/ ", "Unexpected   in tag");
  expect_refused("<a/x", "Unexpected x in tag");
  expect_refused("<a//", "Unexpected / in tag");
  expect_refused("<a / ", "Unexpected   in tag");
  expect_refused("<a x=\"1\"/y", "Unexpected y in tag");
  expect_refused("<?xml? ", "Unexpected   in tag");
  expect_refused("<?xml??", "Unexpected ? in tag");
  expect_refused("<?xml ?x", "Unexpected x in tag");
}

TEST(XmlReaderTest, AProcessingTagMayEndWithoutAMark) {
  expect_document("<?xml ><a>1</a>", Object{{"a", 1}});
  expect_document("<?xml version=\"1.0\"><a>1</a>", Object{{"a", 1}});
}

TEST(XmlReaderTest, AProcessingTagMayStandInAnElement) {
  expect_document("<a><?xml x=\"1\"?><b>2</b></a>", Object{{"a", Object{{"", Object{{"b", 2}}}}}});
  expect_refused("<a><?xml?>t", "Unexpected t at the beginning");
}

// --- Attributes

TEST(XmlReaderTest, ARepeatedAttributeIsRefused) {
  expect_refused("<a x=\"1\" x=", "Unexpected x duplicate attribute");
  expect_refused("<a x=\"1\" x ", "Unexpected x duplicate attribute");
  const XmlOutcome outcome = outcome_of("<a x=\"1\" x=\"2\">");
  EXPECT_EQ(outcome.error, "Unexpected x duplicate attribute");
  EXPECT_EQ(outcome.root, Value(Object{{"a", Object{{"x", 1}}}}));
}

TEST(XmlReaderTest, AnAttributeIsAnEqualsSignAndAQuotedText) {
  expect_refused("<a x>", "Unexpected > in attribute");
  expect_refused("<a x/", "Unexpected / in attribute");
  expect_refused("<a x y", "Unexpected y in attribute");
  expect_refused("<a x\"", "Unexpected \" in attribute");
  expect_refused("<a x==", "Unexpected = in attribute");
  expect_refused("<a x=1", "Unexpected 1 in attribute");
  expect_refused("<a x-", "Unexpected - in attribute");
}

TEST(XmlReaderTest, AnAttributeIsEnteredBeforeItsValue) {
  EXPECT_EQ(outcome_of("<a x=1").root, Value(Object{{"a", Object{{"x", Value()}}}}));
}

TEST(XmlReaderTest, TheReadersOwnMapTakesTheAttributesOfTheProcessingTag) {
  expect_refused("<?xml a=\"1\" a=", "Unexpected a duplicate attribute");
  expect_refused("<?xml version=\"1.0\"?><?xml version=", "Unexpected version duplicate attribute");
  expect_document("<?xml version=\"1.0\"?><version version=\"2\"/>",
                  Object{{"version", Object{{"version", 2}}}});
}

bool feed(XmlReader& reader, const std::string& text) {
  const char* begin = text.data();
  return reader.read(begin, begin + text.size());
}

TEST(XmlReaderTest, ClearingForgetsTheAttributesOfTheProcessingTag) {
  Value root;
  XmlReader reader(root);
  EXPECT_FALSE(feed(reader, "<?xml version=\"1.0\"?>"));
  reader.clear();
  EXPECT_FALSE(feed(reader, "<?xml version=\"1.0\"?>"));
  EXPECT_TRUE(feed(reader, "<a>1</a>"));
  EXPECT_EQ(root, Value(Object{{"a", 1}}));
}

TEST(XmlReaderTest, ClearingWithinAnAttributeOfTheProcessingTagDropsIt) {
  const std::string text = "<?xml version = \"1.0&lt;\" version=\"2\"?><a x=\"1\">2</a>";
  for (std::size_t cut = 0; cut < 24; ++cut) {
    Value root;
    XmlReader reader(root);
    feed(reader, text.substr(0, cut));
    reader.clear();
    try {
      EXPECT_TRUE(feed(reader, text.substr(cut))) << cut;
      EXPECT_EQ(root, Value(Object{{"a", Object{{"", 2}, {"x", 1}}}})) << cut;
      EXPECT_GE(cut, 14u);
    } catch (const XmlReader::Unexpected& error) {
      EXPECT_STREQ(error.what(), "Unexpected version duplicate attribute");
      EXPECT_LT(cut, 14u);
    }
  }
}

TEST(XmlReaderTest, ClearingKeepsTheStateOfReading) {
  const std::string text = "<?xml v=\"1\"?><a x=\"tr&lt;ue\"><b>12</b></a>";
  const Value value = read_whole(text).root;
  for (std::size_t cut = 13; cut < text.size(); ++cut) {
    Value root;
    XmlReader reader(root);
    EXPECT_FALSE(feed(reader, text.substr(0, cut)));
    reader.clear();
    EXPECT_TRUE(feed(reader, text.substr(cut)));
    EXPECT_EQ(root, value) << cut;
  }
}

// --- Empty tags and the end of the root

TEST(XmlReaderTest, AnEmptyTagIsANullElement) {
  expect_open("<a/>", Object{{"a", Value()}}, true);
  expect_document("<a><b/></a>", Object{{"a", Object{{"", Object{{"b", Value()}}}}}});
}

TEST(XmlReaderTest, ATextBehindAnEmptyTagIsItsValue) {
  expect_document("<a><b/>12</a>", Object{{"a", Object{{"", Object{{"b", 12}}}}}});
  expect_document("<a><b/>\n text<c/></a>",
                  Object{{"a", Object{{"", Object{{"b", "text"}, {"c", Value()}}}}}});
  expect_open("<a/>text<", Object{{"a", "text"}}, false);
}

TEST(XmlReaderTest, WhitespaceBehindAnEmptyTagChangesNothing) {
  expect_document("<a><b/> \n\t</a>", Object{{"a", Object{{"", Object{{"b", Value()}}}}}});
  expect_open("<a/> \n", Object{{"a", Value()}}, true);
}

TEST(XmlReaderTest, AnEmptyTagAsRootDoesNotEndTheReading) {
  expect_open("<a/>", Object{{"a", Value()}}, true);
  expect_document("<a/><b></b>", Object{{"a", Value()}, {"b", Value()}});
}

TEST(XmlReaderTest, AnEmptyTagWithABlankOrAnAttributeEndsTheRoot) {
  expect_document("<a />", Object{{"a", Value()}});
  expect_document("<a x=\"1\"/>", Object{{"a", Object{{"x", 1}}}});
  expect_document("<a></a>", Object{{"a", Value()}});
}

TEST(XmlReaderTest, AnEmptyTagWithABlankTakesNoText) {
  expect_refused("<a><b />t", "Unexpected t at the beginning");
}

TEST(XmlReaderTest, WhatStandsBehindTheRootStaysInTheSlice) {
  for (const std::string document : {"<a>1</a>", "<a x=\"1\"/>", "<a>1</a >", "<a />"}) {
    const XmlOutcome outcome = outcome_of(document + "<b/> and more");
    EXPECT_TRUE(outcome.is_closed) << document;
    EXPECT_EQ(outcome.taken, document.size()) << document;
    EXPECT_EQ(outcome.root.map().size(), 1u) << document;
  }
}

TEST(XmlReaderTest, AFurtherRootGoesIntoTheSameMap) {
  Value root;
  XmlReader reader(root);
  EXPECT_TRUE(feed(reader, "<a x=\"1\"/>"));
  EXPECT_TRUE(feed(reader, "<b x=\"2\"/>"));
  EXPECT_TRUE(feed(reader, "<a x=\"3\"/>"));
  EXPECT_EQ(root, Value(Object{{"a", Array{Object{{"x", 1}}, Object{{"x", 3}}}},
                               {"b", Object{{"x", 2}}}}));
}

TEST(XmlReaderTest, TheEndTagOfTheRootStaysInFrontOfTheNextName) {
  Value root;
  XmlReader reader(root);
  EXPECT_TRUE(feed(reader, "<a>1</a>"));
  EXPECT_TRUE(feed(reader, "<b x=\"2\"/>"));
  EXPECT_EQ(root, Value(Object{{"a", 1}, {"ab", Object{{"x", 2}}}}));
}

TEST(XmlReaderTest, AnEndTagWithABlankLeavesNoName) {
  Value root;
  XmlReader reader(root);
  EXPECT_TRUE(feed(reader, "<a>1</a >"));
  EXPECT_TRUE(feed(reader, "<b>2</b>"));
  EXPECT_EQ(root, Value(Object{{"a", 1}, {"b", 2}}));
}

// --- The end of the text

TEST(XmlReaderTest, AnEmptySliceGivesFalseAndTakesNothing) {
  Value root;
  XmlReader reader(root);
  const char* begin = "<a>";
  const char* const before = begin;
  EXPECT_FALSE(reader.read(begin, before));
  EXPECT_EQ(begin, before);
}

TEST(XmlReaderTest, ATextThatIsCutOffMayNotEnd) {
  const std::string text = "<?xml v=\"1\"?><a x=\"1\">\n<b>te&lt;xt</b><c/></a>";
  for (std::size_t size = 14; size < text.size(); ++size) {
    EXPECT_FALSE(read_whole(text.substr(0, size)).may_end) << size;
  }
  EXPECT_TRUE(read_whole(text).may_end);
}

TEST(XmlReaderTest, NothingAndAPrologMayEnd) {
  for (const char* const text : {"", " \n", "<?xml v=\"1\"?>", "<?xml?>\n"}) {
    expect_open(text, Value(), true);
  }
  for (const char* const text : {"<", "<?xml", "<?xml ", "<?xml v=\"1\"", "<?xml?"}) {
    expect_open(text, Value(), false);
  }
}

TEST(XmlReaderTest, ATextThatWaitsForItsEndMayNotEnd) {
  expect_open("<a/>1", Object{{"a", Value()}}, false);
  expect_open("<a/>x&lt;", Object{{"a", Value()}}, false);
  expect_open("<a/", Object{{"a", Value()}}, false);
}

TEST(XmlReaderTest, AStreamThatEndsInTheDocumentGivesFalse) {
  Value root;
  XmlReader reader(root);
  std::istringstream first("<a>te");
  EXPECT_FALSE(reader.read(first));
  EXPECT_TRUE(first.eof());
  std::istringstream second("xt</a> behind");
  EXPECT_TRUE(reader.read(second));
  EXPECT_EQ(second.tellg(), 6);
  EXPECT_EQ(root, Value(Object{{"a", "text"}}));
}

TEST(XmlReaderTest, AStreamKeepsTheWhitespace) {
  Value root;
  XmlReader reader(root);
  std::istringstream in("<a x=\"1 2\">3 4\n</a>");
  EXPECT_TRUE(reader.read(in));
  EXPECT_EQ(root, Value(Object{{"a", Object{{"", "3 4\n"}, {"x", "1 2"}}}}));
}

TEST(XmlReaderTest, UnexpectedIsARuntimeError) {
  const XmlReader::Unexpected character('!', "in tag name");
  EXPECT_STREQ("Unexpected ! in tag name", character.what());
  const XmlReader::Unexpected string(std::string("b"), "end tag");
  const std::runtime_error& error = string;
  EXPECT_STREQ("Unexpected b end tag", error.what());
}

// --- Hostile texts

// Reads to the end of the text, whatever is refused on the way.
Value read_on(const std::string& text, std::size_t slice) {
  Value root;
  XmlReader reader(root);
  const char* begin = text.data();
  const char* const end = begin + text.size();
  while (begin != end) {
    const char* const slice_end = std::min(begin + slice, end);
    try {
      reader.read(begin, slice_end);
    } catch (const XmlReader::Unexpected&) {
      reader.clear();
    }
  }
  return root;
}

TEST(XmlReaderTest, ReadingOnBehindAnErrorFollowsNoStalePointer) {
  const std::string pieces[] = {"<a>",     "</a>",  "<b/>", "<c x=\"1\"", " x=",  "\"t",   ">",
                                "<?xml v", "=\"1&", "lt;",  "\"?>",       "text", "<d />", "!"};
  for (const std::string& first : pieces) {
    for (const std::string& second : pieces) {
      for (const std::string& third : pieces) {
        const std::string part = first + second + third;
        const std::string text = "<r>" + part + part;
        EXPECT_EQ(read_on(text, text.size()), read_on(text, 1)) << text;
      }
    }
  }
}

TEST(XmlReaderTest, DepthIsBoundedByMemoryAlone) {
  constexpr int depth = 1000000;
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
  for (int i = 0; i < depth; ++i) text += "<a>";
  text += '1';
  for (int i = 0; i < depth; ++i) text += "</a>";
  const XmlOutcome outcome = read_whole(text);
  EXPECT_TRUE(outcome.is_closed);
  const Value copy(outcome.root);
  EXPECT_TRUE(copy == outcome.root);
  std::ostringstream out;
  write_xml(copy, out);
  EXPECT_TRUE(out.str() == text);
}

TEST(XmlReaderTest, ALongTextIsReadInOneGo) {
  const std::string run(1 << 20, 'x');
  EXPECT_EQ(read_whole("<a>" + run + "&lt;" + run + "</a>").root,
            Value(Object{{"a", run + '<' + run}}));
  EXPECT_EQ(read_whole("<" + run + ">1</" + run + ">").root, Value(Object{{run, 1}}));
  const std::string digits(1 << 20, '7');
  EXPECT_EQ(read_whole("<a>" + digits + "</a>").root,
            Value(Object{{"a", std::numeric_limits<int>::max()}}));
  EXPECT_EQ(read_whole("<a>" + digits + ".5</a>").root,
            Value(Object{{"a", std::numeric_limits<double>::max()}}));
}

}  // namespace
