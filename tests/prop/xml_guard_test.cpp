#include "prop/xml_guard_internal.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <tinyxml.h>

#include <algorithm>
#include <string>
#include <vector>

#include "prop/xml_error_internal.h"
#include "support/expect_error.h"

namespace {

using Vrel::detail::check_xml;
using Vrel::detail::Xml_error;

bool is_passed(const std::string& text) {
  try {
    check_xml(text);
    return true;
  } catch (const Xml_error&) {
    return false;
  }
}

void expect_refused(const std::string& text, const char* what) {
  EXPECT_STANDARD_ERROR(check_xml(text), Xml_error, what);
}

std::string repeated(const std::string& part, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += part;
  return text;
}

std::string nested(int levels) { return repeated("<a>", levels) + repeated("</a>", levels); }

TEST(XmlGuardTest, DocumentsPass) {
  for (const char* const text :
       {"<a/>", "<a />", "<a></a >", "<a>b</a>", "<a b=\"1\"/>", "<a b = '1' c=\"'\"/>",
        "<a\n\tb='>'></a>", " <a/> \n", "\xEF\xBB\xBF<a/>", "<a_1-.:x/>", "<\xC3\xA9/>",
        "<a>&lt;&#65;&#x41;</a>", "<a b='&amp;&lt;&gt;&quot;&apos;'>&amp;&lt;&gt;&quot;&apos;</a>",
        "<a>></a>", "<a>]]</a>", "<a><b/><b/></a>"}) {
    EXPECT_NO_THROW(check_xml(text)) << text;
  }
}

TEST(XmlGuardTest, CommentsPassAnywhere) {
  EXPECT_NO_THROW(check_xml("<!-- <a> --><a><!--</a>--></a><!---->"));
}

TEST(XmlGuardTest, SectionsPassInElements) {
  EXPECT_NO_THROW(check_xml("<a><![CDATA[<b>&#x]] ></a>]]></a>"));
}

TEST(XmlGuardTest, DeclarationsPassOutsideOfTheRoot) {
  for (const char* const text :
       {"<?xml version=\"1.0\"?><a/>",
        "<?xml version='1.0' encoding='UTF-8' standalone=\"yes\" ?><a/>", "<?x y?><a/><?x?>",
        "<?xml?><a/>", "<?xm?><a/>", "<!DOCTYPE a><a/>", "<!DOCTYPE a SYSTEM \"b\"><a/>"}) {
    EXPECT_NO_THROW(check_xml(text)) << text;
  }
}

TEST(XmlGuardTest, NestingOf256ElementsPasses) { EXPECT_NO_THROW(check_xml(nested(256))); }

TEST(XmlGuardTest, DeeperNestingIsRefused) {
  expect_refused(nested(257), "Elements are nested too deep (line 1)");
}

TEST(XmlGuardTest, MillionsOfOpenElementsAreRefused) {
  expect_refused(repeated("<a>", 1000000), "Elements are nested too deep (line 1)");
}

TEST(XmlGuardTest, ClosedElementsDoNotCount) {
  EXPECT_NO_THROW(check_xml("<a>" + repeated("<b/><c></c>", 1000) + "</a>"));
}

// With a root around them.
std::string elements(std::size_t count) {
  return "<a>" + repeated("<b/>", static_cast<int>(count) - 1) + "</a>";
}

TEST(XmlGuardTest, AsManyElementsPassAsTheSizeAllows) {
  EXPECT_EQ(Vrel::detail::highest_xml_element_count(elements(87381).size()), 87381U);
  EXPECT_NO_THROW(check_xml(elements(87381)));
  expect_refused(elements(87382), "There are too many elements (line 1)");
}

TEST(XmlGuardTest, ElementsThatAreAsLongAsWrittenOnesAreNeverTooMany) {
  const std::string element = "<a idx=\"1\" type=\"struct\" size=\"1 1\" />";
  EXPECT_NO_THROW(
      check_xml("<a>" + repeated(element, (8 << 20) / static_cast<int>(element.size())) + "</a>"));
}

TEST(XmlGuardTest, ATextOf64MiBPasses) {
  std::string text = "<a></a>";
  text.insert(3, (64u << 20) - text.size(), 'x');
  EXPECT_NO_THROW(check_xml(text));
}

TEST(XmlGuardTest, ALargerTextIsRefused) {
  std::string text = "<a></a>";
  text.insert(3, (64u << 20) - text.size() + 1, 'x');
  expect_refused(text, "The text is larger than 64 MiB");
}

TEST(XmlGuardTest, AMessageHasTheLine) {
  expect_refused("<a>\n<b>\n</a>", "An end tag has another name than its element (line 3)");
}

TEST(XmlGuardTest, CharactersOfNoDocumentAreRefused) {
  for (const std::string& character :
       {std::string(1, '\0'), std::string("\x01"), std::string("\x1F"), std::string("\xFF"),
        std::string("\xC3"), std::string("\x80"), std::string("\xC0\x80"),
        std::string("\xED\xA0\x80"), std::string("\xEF\xBF\xBE"), std::string("\xEF\xBF\xBF"),
        std::string("\xF4\x90\x80\x80")}) {
    for (const std::string& text :
         {"<a>" + character + "</a>", "<a>12345678" + character + "12345678</a>"}) {
      expect_refused(text, "A character is none that a document can hold (line 1)");
    }
  }
}

TEST(XmlGuardTest, ATextWithoutAnElementIsRefused) {
  for (const char* const text : {"", " ", "<!-- -->", "<?x?>"}) {
    EXPECT_THROW(check_xml(text), Xml_error) << text;
  }
  expect_refused("", "There is no element (line 1)");
}

TEST(XmlGuardTest, TextOutsideOfTheRootIsRefused) {
  for (const char* const text : {"x<a/>", "<a/>x", "<![CDATA[x]]><a/>", "<a/><![CDATA[x]]>"}) {
    expect_refused(text, "There is text outside of the root element (line 1)");
  }
}

TEST(XmlGuardTest, ASecondRootIsRefused) {
  expect_refused("<a/><b/>", "There is a second root element (line 1)");
}

TEST(XmlGuardTest, AnElementWithoutAnEndIsRefused) {
  for (const char* const text : {"<a>", "<a><b/>", "<a>x"}) {
    expect_refused(text, "An element has no end (line 1)");
  }
}

TEST(XmlGuardTest, AnEndTagWithoutAnElementIsRefused) {
  expect_refused("<a/></a>", "An end tag belongs to no element (line 1)");
  expect_refused("</a>", "An end tag belongs to no element (line 1)");
}

TEST(XmlGuardTest, BrokenTagsAreRefused) {
  for (const char* const text : {"<",
                                 "< a/>",
                                 "<a",
                                 "<a/",
                                 "<a / >",
                                 "<a/ >",
                                 "<1/>",
                                 "<a b/>",
                                 "<a b=/>",
                                 "<a b=1/>",
                                 "<a b='1/>",
                                 "<a b='1'c='2'/>",
                                 "<a <b/>/>",
                                 "<a b<='1'/>",
                                 "<a></a b='1'>",
                                 "<a></ a>",
                                 "<a></>",
                                 "<a\v/>",
                                 "<a=''/>",
                                 "<\x7F/>",
                                 "<a></a",
                                 "<a b='1' '/>",
                                 "<-/>"}) {
    EXPECT_FALSE(is_passed(text)) << text;
  }
}

TEST(XmlGuardTest, DeclarationsInElementsAreRefused) {
  for (const char* const text : {"<a><?x?></a>", "<a><!DOCTYPE a></a>", "<a><![cdata[]]></a>"}) {
    expect_refused(text, "A declaration stands in an element (line 1)");
  }
}

TEST(XmlGuardTest, DeclarationsThatCouldEndElsewhereAreRefused) {
  for (const char* const text :
       {"<?xml version=\"?><a/>", "<?xml version='>'?><a/>", "<?xml x='a version=\"b'?><a/>",
        "<?xml version='1\"0'?><a/>", "<?x <b> ?><a/>", "<?xml version?><a/>",
        "<?XML version?><a/>", "<?xml version=1?><a/>", "<?xml-x?><a/>", "<?x 'y'?><a/>",
        "<?x><a/>", "<?><a/>", "<!DOCTYPE a [<!ELEMENT a ANY>]><a/>", "<!DOCTYPE a",
        "<?xml version='1.0'encoding='x'?><a/>", "<?xml ? ?><a/>"}) {
    EXPECT_FALSE(is_passed(text)) << text;
  }
}

TEST(XmlGuardTest, OpenCommentsAndSectionsAreRefused) {
  expect_refused("<!-- <a/>", "A comment has no end (line 1)");
  expect_refused("<!--><a/>", "A comment has no end (line 1)");
  expect_refused("<a><![CDATA[]]</a>", "A CDATA section has no end (line 1)");
}

TEST(XmlGuardTest, BrokenReferencesAreRefused) {
  for (const char* const reference : {"&#",
                                      "&#x",
                                      "&#x41",
                                      "&#;",
                                      "&#x;",
                                      "&#xG;",
                                      "&#xg;",
                                      "&#x`;",
                                      "&#x@;",
                                      "&#x/;",
                                      "&#4A;",
                                      "&#X41;",
                                      "&#x<b c='x41;'/>",
                                      "&#00000000065;",
                                      "&#0;",
                                      "&#x1;",
                                      "&#xD800;",
                                      "&#xFFFE;",
                                      "&#x110000;",
                                      "&#xFFFFFFFF;"}) {
    EXPECT_FALSE(is_passed(std::string("<a>") + reference + "</a>")) << reference;
    EXPECT_FALSE(is_passed(std::string("<a b=\"") + reference + "\"/>")) << reference;
  }
}

TEST(XmlGuardTest, ReferencesToNothingAreRefused) {
  for (const std::string reference :
       {"&", "& ", "&b;", "&amp", "&amp ;", "&AMP;", "&;", "&&amp;", "&amp;&", "&lt;&b;"}) {
    expect_refused("<a>" + reference + "</a>", "A reference is to nothing (line 1)");
    expect_refused("<a b='" + reference + "'/>", "A reference is to nothing (line 1)");
  }
}

TEST(XmlGuardTest, AReferenceDoesNotGoOnBehindItsText) {
  expect_refused("<a>&<b/>amp;</a>", "A reference is to nothing (line 1)");
  expect_refused("<a b='&'>amp;</a>", "A reference is to nothing (line 1)");
}

TEST(XmlGuardTest, ABracketInAnAttributeIsRefused) {
  expect_refused("<a b='<c>'/>", "The value of an attribute has a bracket (line 1)");
}

TEST(XmlGuardTest, TheEndOfASectionWithoutItsBeginningIsRefused) {
  expect_refused("<a>b]]>c</a>", "A text has the end of a CDATA section (line 1)");
}

TEST(XmlGuardTest, HyphensInACommentAreRefused) {
  for (const char* const text : {"<!-- a -- b --><a/>", "<!-- a ---><a/>", "<a><!-- -- --></a>"}) {
    expect_refused(text, "A comment has two hyphens (line 1)");
  }
}

TEST(XmlGuardTest, DeclarationsBehindTheRootAreRefused) {
  for (const char* const text :
       {"<a/><?xml version='1.0'?>", "<a/><?XML?>", "<a/><!DOCTYPE a>", "<a></a><!DOCTYPE a>"}) {
    expect_refused(text, "A declaration stands behind the root (line 1)");
  }
}

TEST(XmlGuardTest, UnknownDeclarationsAreRefused) {
  for (const char* const text : {"<!foo><a/>", "<!><a/>", "<!DOCTYPE><a/>", "<!DOCTYPEa><a/>",
                                 "<!doctype a><a/>", "<a/><!b>"}) {
    expect_refused(text, "A declaration is unknown (line 1)");
  }
}

TEST(XmlGuardTest, TagsHiddenByAReferenceAreRefused) {
  EXPECT_FALSE(is_passed("<a>&#x<b c=\"x41;" + repeated("<d>", 1000) + "\"/></a>"));
}

TEST(XmlGuardTest, ManyAttributesPassUpToABound) {
  std::string attributes;
  for (int i = 0; i < 256; ++i) attributes += " a" + std::to_string(i) + "=''";
  EXPECT_NO_THROW(check_xml("<a" + attributes + "/>"));
  expect_refused("<a" + attributes + " b=''/>", "An element has too many attributes (line 1)");
}

// Of elements, the library's own view.
int depth_seen(const TiXmlNode& node) {
  int depth = 0;
  for (const TiXmlElement* child = node.FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement()) {
    depth = std::max(depth, 1 + depth_seen(*child));
  }
  return depth;
}

// A plain count of the tags of what passed.
int depth_counted(const std::string& text) {
  int depth = 0;
  int deepest = 0;
  for (std::size_t at = text.find('<'); at != std::string::npos; at = text.find('<', at + 1)) {
    const bool is_end = text[at + 1] == '/';
    depth += is_end ? -1 : 1;
    deepest = std::max(deepest, depth);
  }
  return deepest;
}

RC_GTEST_PROP(XmlGuardTest, TheLibrarySeesNoDeeperElementsThanThereAreTags, ()) {
  const auto part =
      rc::gen::element<std::string>("<a>", "</a>", "<b>", "</b>", "<a b='", "'>", "\"", "'", "/>",
                                    "<!--", "-->", "<![CDATA[", "]]>", "<?xml ", "?>", "version=\"",
                                    "&#x", "x41;", ";", " ", "c", ">", "<", "\xC3\xA9", "\xF0");
  const auto parts = *rc::gen::container<std::vector<std::string>>(part);
  std::string text = "<a>";
  for (const std::string& each : parts) text += each;
  text += "</a>";
  if (!is_passed(text)) return;
  TiXmlDocument document;
  document.SetTabSize(0);
  document.Parse(text.c_str(), nullptr, TIXML_ENCODING_UTF8);
  RC_ASSERT(depth_seen(document) <= depth_counted(text));
}

}  // namespace
