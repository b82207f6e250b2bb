#include "lib/text_document.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include <vrelio/foundation/error.h>

#include <algorithm>
#include <cerrno>
#include <string>

#include "support/deep_value.h"

namespace Vrel::tool {
namespace {

// A text in slices of some size.
Source slices_of(const std::string& text, std::size_t slice) {
  return [text, slice, at = std::size_t{0}](char* buffer, std::size_t size) mutable {
    const std::size_t count = text.copy(buffer, std::min(slice, size), at);
    at += count;
    return count;
  };
}

class TextOutput : public Output {
 public:
  using Output::write;
  void write(const void* data, std::size_t size) override {
    text.append(static_cast<const char*>(data), size);
  }
  void finish() override {}

  std::string text;
};

std::string xml_of(const Json::Object& object) {
  TextOutput output;
  write_xml_document(object, output);
  return output.text;
}

std::string json_of(const Json::Value& value) {
  TextOutput output;
  write_json_document(value, output);
  return output.text;
}

template <class Work>
std::string message_of(Work work) {
  try {
    work();
  } catch (const VrelError& error) {
    return error.get_msg();
  }
  return "nothing raised";
}

std::string json_fault(const std::string& text) {
  std::string message = message_of([&] { read_json_document(slices_of(text, 1)); });
  EXPECT_EQ(message, message_of([&] { read_json_document(slices_of(text, text.size() + 1)); }));
  return message;
}

std::string xml_fault(const std::string& text) {
  std::string message = message_of([&] { read_xml_document(slices_of(text, 1)); });
  EXPECT_EQ(message, message_of([&] { read_xml_document(slices_of(text, text.size() + 1)); }));
  return message;
}

TEST(TextDocumentTest, AJsonDocumentIsReadFromSlicesOfAnySize) {
  const std::string text = " {\"a\":[1,2.5,\"x\"]} \n\t\v\f\r";
  const Json::Object expected{
      {"a", Json::Array{Json::Value(1), Json::Value(2.5), Json::Value("x")}}};
  for (const std::size_t slice : {1U, 2U, 3U, 7U, 100U}) {
    EXPECT_EQ(expected, read_json_document(slices_of(text, slice))) << slice;
  }
}

TEST(TextDocumentTest, AnXmlDocumentIsReadFromSlicesOfAnySize) {
  const std::string text = "<?xml version=\"1.0\"?>\n<a x=\"1\"><b>t</b></a>\n";
  const Json::Value expected(
      Json::Object{{"a", Json::Object{{"x", 1}, {"", Json::Object{{"b", "t"}}}}}});
  for (const std::size_t slice : {1U, 2U, 3U, 7U, 100U}) {
    EXPECT_EQ(expected, read_xml_document(slices_of(text, slice))) << slice;
  }
}

TEST(TextDocumentTest, ADocumentLongerThanASliceIsCountedOn) {
  const std::string text = "{\"a\":\"" + std::string(200000, 'x') + "\",}";
  EXPECT_EQ("Unexpected '}' character in object value at byte 200009", json_fault(text));
}

TEST(TextDocumentTest, TheByteAtFaultIsCountedFromOne) {
  EXPECT_EQ("Unexpected '[' character in object value at byte 1", json_fault("[1]"));
  EXPECT_EQ("Unexpected ']' character in value value at byte 9", json_fault("{\"a\":[1,]}"));
  EXPECT_EQ("Unexpected x at the beginning at byte 1", xml_fault("x"));
  EXPECT_EQ("Unexpected ! in tag name at byte 5", xml_fault("<a><!-- -->"));
}

TEST(TextDocumentTest, AnInputThatEndsInsideIsRefused) {
  EXPECT_EQ("The input ends inside the document at byte 0", json_fault(""));
  EXPECT_EQ("The input ends inside the document at byte 7", json_fault("{\"a\":1 "));
  EXPECT_EQ("The input ends inside the document at byte 0", xml_fault(""));
  EXPECT_EQ("The input ends inside the document at byte 2", xml_fault(" \n"));
  EXPECT_EQ("The input ends inside the document at byte 21", xml_fault("<?xml version=\"1.0\"?>"));
  EXPECT_EQ("The input ends inside the document at byte 3", xml_fault("<a/"));
  EXPECT_EQ("The input ends inside the document at byte 7", xml_fault("<a><b/>"));
  EXPECT_EQ("The input ends inside the document at byte 5", xml_fault("<a/>t"));
}

TEST(TextDocumentTest, AnEmptyRootElementIsADocument) {
  for (const char* const text : {"<a/>", "<a />", "<a></a>", " <a/>\n"}) {
    EXPECT_EQ(Json::Value(Json::Object{{"a", Json::Value()}}),
              read_xml_document(slices_of(text, 1)))
        << text;
  }
}

TEST(TextDocumentTest, TextBehindTheDocumentIsRefused) {
  EXPECT_EQ("Text behind the document at byte 9", json_fault("{\"a\":1} {}"));
  EXPECT_EQ("Text behind the document at byte 9", xml_fault("<a></a>\n<b/>"));
}

TEST(TextDocumentTest, JsonTextEscapesWhatStringsHoldOfControlCharacters) {
  EXPECT_EQ("\"a\\b\\t\\n\\u000b\\f\\r\\u0000\\u001f\\u0001\x7F\xC3\xA9\"\n",
            json_of(std::string("a\b\t\n\v\f\r\0\x1F\x01\x7F\xC3\xA9", 13)));
  EXPECT_EQ("{\"a\\n\":[1,2.0]}\n",
            json_of(Json::Object{{"a\n", Json::Array{Json::Value(1), Json::Value(2.0)}}}));
}

TEST(TextDocumentTest, AnXmlDocumentEndsWithALine) {
  EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\"?><a x=\"1\"><b>t</b></a>\n",
            xml_of({{"a", Json::Object{{"x", 1}, {"", Json::Object{{"b", "t"}}}}}}));
}

TEST(TextDocumentTest, AnXmlDocumentHasOneRootElement) {
  const auto fault = [](const Json::Object& object) { return message_of([&] { xml_of(object); }); };
  EXPECT_EQ("An XML document has one root element, not 0!", fault({}));
  EXPECT_EQ("An XML document has one root element, not 0!",
            fault({{"a", ""}, {"b", Json::Value()}}));
  EXPECT_EQ("An XML document has one root element, not 2!", fault({{"a", 1}, {"b", 1}}));
  EXPECT_EQ(
      "An XML document has one root element, not 3!",
      fault({{"a", Json::Array{Json::Value(1), Json::Value(), Json::Value(2), Json::Value(3)}}}));
  EXPECT_EQ("nothing raised", fault({{"a", Json::Array{Json::Value(1)}}, {"b", Json::Value()}}));
}

TEST(TextDocumentTest, NamesOfElementsAndAttributesAreXmlNames) {
  const auto fault = [](const Json::Object& object) { return message_of([&] { xml_of(object); }); };
  for (const char* const name : {"a", "_", ":a", "a-b.c1", "\xC3\xA9", "ome:Image"}) {
    EXPECT_EQ("nothing raised", fault({{name, 1}})) << name;
  }
  for (const std::string name : {"", "1", "-a", ".a", "a b", "a<", "a\""}) {
    const std::string message = fault({{"r", Json::Object{{"", Json::Object{{name, 1}}}}}});
    EXPECT_NE(std::string::npos, message.find(" is no XML name!")) << name << ": " << message;
  }
  EXPECT_EQ("\"a b\" is no XML name!", fault({{"r", Json::Object{{"a b", 1}}}}));
  EXPECT_EQ("nothing raised", fault({{"r", Json::Object{{"a b", Json::Value()}}}}));
}

TEST(TextDocumentTest, NothingIsWrittenOfWhatIsNoDocument) {
  TextOutput output;
  EXPECT_THROW(write_xml_document({{"a b", 1}}, output), VrelError);
  EXPECT_EQ("", output.text);
}

TEST(TextDocumentTest, DepthIsBoundedByMemoryAlone) {
  Json::Value inner(1);
  for (int level = 0; level < deep_levels; ++level) {
    Json::Object content;
    content.emplace("a", std::move(inner));
    Json::Object element;
    element.emplace("", std::move(content));
    inner = std::move(element);
  }
  Json::Object document;
  document.emplace("a", std::move(inner));
  const std::string text = xml_of(document);
  EXPECT_EQ("</a></a>\n", text.substr(text.size() - 9));
}

TEST(SourceTest, ADescriptorThatCannotBeReadIsAnErrorOfTheSystem) {
  const int folder = ::open("/", O_RDONLY);
  char buffer[4];
  try {
    read_descriptor(folder)(buffer, sizeof buffer);
    ADD_FAILURE();
  } catch (const VrelError& error) {
    EXPECT_STREQ("Could not read!", error.get_msg());
    EXPECT_EQ(EISDIR, error.get_oserr_id());
  }
  ::close(folder);
}

}  // namespace
}  // namespace Vrel::tool
