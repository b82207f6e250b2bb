// Generated values through text and back, and generated texts in generated slices.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <vrelio/json/write_xml.h>
#include <vrelio/json/xml_reader.h>

#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

#include "json/xml_outcome.h"

namespace {

using Json::Array;
using Json::Object;
using Json::Value;
using Vrel::testing::read_from_stream;
using Vrel::testing::read_in_slices;
using Vrel::testing::read_whole;
using Vrel::testing::XmlOutcome;

constexpr int greatest_depth = 4;

// From `first` to `last`, both included.
int number_between(int first, int last) { return *rc::gen::inRange(first, last + 1); }

char one_of(const std::string& characters) {
  return characters[static_cast<std::size_t>(number_between(0, int(characters.size()) - 1))];
}

const std::string letters = "ABCXYZabcxyz";

std::string any_name() {
  std::string name(1, one_of(letters));
  const int length = number_between(0, 3);
  for (int i = 0; i < length; ++i) name += one_of(letters + "0129_:");
  return name;
}

// Strings that come back: they do not begin like a number or a literal, nor with a character that is
// skipped or escaped.
std::string any_string() {
  std::string string(1, one_of("abcX+.;#/=\x01\x7F\x80\xFF"));
  const int length = number_between(0, 8);
  for (int i = 0; i < length; ++i) string += static_cast<char>(number_between(0, 255));
  return string;
}

// Decimals with no more digits than are written; one division rounds as reading does.
double any_decimal() {
  const double digits = number_between(-999999999, 999999999);
  const double whole = digits * *rc::gen::element(1.0, 1e5);
  return whole == digits ? digits / *rc::gen::element(1.0, 10.0, 1000.0, 1e12, 1e20) : whole;
}

Value any_scalar() {
  switch (number_between(0, 3)) {
    case 0:
      return *rc::gen::arbitrary<bool>();
    case 1:
      return *rc::gen::arbitrary<int>();
    case 2:
      return any_decimal();
    default:
      return any_string();
  }
}

Value any_attribute() { return number_between(0, 9) == 0 ? Value("") : any_scalar(); }

Value any_element(int depth);

Value any_children(int depth) {
  Object children;
  const int count = number_between(1, 3);
  for (int i = 0; i < count; ++i) {
    Value& child = children[any_name()];
    child = any_element(depth);
    const int further = number_between(0, 5) - 3;
    for (int j = 0; j < further; ++j) child.array().push_back(any_element(depth));
  }
  return children;
}

// An element without attributes and children is a scalar; in a map there are attributes or children.
Value any_element(int depth) {
  const int attributes = number_between(0, 2);
  const bool has_children = depth < greatest_depth && *rc::gen::arbitrary<bool>();
  if (attributes == 0 && !has_children) return any_scalar();
  Object element;
  for (int i = 0; i < attributes; ++i) element[any_name()] = any_attribute();
  if (has_children) {
    element[""] = any_children(depth + 1);
  } else if (*rc::gen::arbitrary<bool>()) {
    element[""] = any_scalar();
  }
  return element;
}

Value any_document() { return Object{{any_name(), any_element(0)}}; }

std::string written(const Value& value) {
  std::ostringstream out;
  write_xml(value, out);
  return out.str();
}

RC_GTEST_PROP(XmlRoundTripTest, ADocumentThatIsWrittenReadsAsTheSameValue, ()) {
  const Value document = any_document();
  const std::string text = written(document);
  RC_LOG() << text;
  const XmlOutcome outcome = read_whole(text);
  RC_ASSERT(outcome.error == "");
  RC_ASSERT(outcome.is_closed);
  RC_ASSERT(outcome.taken == text.size());
  RC_ASSERT(outcome.root == document);
}

// Sizes of slices, one after the other and again from the front.
std::vector<std::size_t> any_sizes() {
  return *rc::gen::nonEmpty(
      rc::gen::container<std::vector<std::size_t>>(rc::gen::inRange<std::size_t>(1, 12)));
}

XmlOutcome read_by(const std::string& text, const std::vector<std::size_t>& sizes) {
  std::size_t slice = 0;
  return read_in_slices(text, [&](std::size_t) { return sizes[slice++ % sizes.size()]; });
}

RC_GTEST_PROP(XmlRoundTripTest, SlicesOfADocumentGiveItsValue, ()) {
  const std::string text = written(any_document());
  const XmlOutcome whole = read_whole(text);
  RC_ASSERT(read_by(text, any_sizes()) == whole);
  RC_ASSERT(read_from_stream(text) == whole);
}

RC_GTEST_PROP(XmlRoundTripTest, SlicesOfAnythingGiveWhatTheWholeGives, ()) {
  const auto piece = rc::gen::elementOf(std::vector<std::string>{
      "<a>",  "</a>", "<b/>", "<b />",  "<c x=\"", "\"",   "'",        " y='",
      ">",    "/",    "?",    "<?xml ", "<",       "&lt;", "&",        ";",
      "true", "fa",   "1",    ".5e-3",  "text",    " \n",  "\xC3\xA4", "="});
  std::string text = *rc::gen::element<std::string>("", "<a>", "<a x=\"");
  for (const std::string& part : *rc::gen::container<std::vector<std::string>>(piece)) text += part;
  const XmlOutcome whole = read_whole(text);
  RC_CLASSIFY(whole.error.empty());
  RC_CLASSIFY(whole.is_closed);
  RC_ASSERT(read_by(text, any_sizes()) == whole);
  RC_ASSERT(read_from_stream(text) == whole);
}

}  // namespace
