// Values, readers and writers that run out of memory anywhere.
#include <gtest/gtest.h>
#include <vrelio/json/reader.h>
#include <vrelio/json/write_xml.h>
#include <vrelio/json/xml_reader.h>

#include <cerrno>
#include <new>
#include <sstream>
#include <string>

#include "support/system_fault.h"

namespace {

using Json::Array;
using Json::Object;
using Json::Value;
using Vrel::testing::ScopedSystemFault;
using Vrel::testing::SystemCall;

const std::string long_text(100, 'x');

// One of each kind that takes memory, in a document of JSON and of XML.
const Value tree(Object{
    {"a", Object{{"", Object{{long_text, Array{long_text, Object{{long_text, 1}}}}}}}}});

struct Attempt {
  bool is_refused;
  bool lacked_memory;
};

// `work` tells whether it was refused without an exception.
template <class Work>
Attempt attempt(int allocation, Work work) {
  const ScopedSystemFault fault({SystemCall::allocate_object, allocation, ENOMEM, 0});
  bool is_refused = true;
  try {
    is_refused = work();
  } catch (const std::bad_alloc&) {
  }
  return {is_refused, fault.happened()};
}

// Lets every allocation in turn fail, until the work has all that it asks for.
template <class Work, class Check>
void fail_each_allocation(Work work, Check check_after_failure) {
  int allocation = 0;
  for (bool lacked_memory = true; lacked_memory;) {
    const Attempt outcome = attempt(++allocation, work);
    lacked_memory = outcome.lacked_memory;
    ASSERT_EQ(outcome.is_refused, lacked_memory) << "allocation " << allocation;
    if (lacked_memory) check_after_failure();
  }
  EXPECT_GT(allocation, 5);
}

TEST(ValueMemoryTest, AnAssignmentThatFailsChangesNothing) {
  const Value before(Array{1, long_text});
  Value value = before;
  const auto assign = [&value] {
    value = tree;
    return false;
  };
  fail_each_allocation(assign, [&] { EXPECT_EQ(value, before); });
  EXPECT_EQ(value, tree);
}

TEST(ValueMemoryTest, AReaderOfJsonTakesTheTextOrRaises) {
  std::ostringstream out;
  out << tree;
  const std::string text = out.str();
  Object object;
  const auto read = [&] {
    Json::Reader reader;
    const char* begin = text.data();
    const bool is_closed = reader.read(begin, begin + text.size());
    object = reader.object();
    return !is_closed;
  };
  fail_each_allocation(read, [] {});
  EXPECT_EQ(Value(object), tree);
}

TEST(ValueMemoryTest, AReaderOfXmlTakesTheTextOrRaises) {
  const std::string text =
      "<a><" + long_text + " " + long_text + "=\"1\">" + long_text + "</" + long_text + "></a>";
  Value root;
  const auto read = [&] {
    Json::XmlReader reader(root);
    const char* begin = text.data();
    return !reader.read(begin, begin + text.size());
  };
  fail_each_allocation(read, [] {});
  EXPECT_EQ(root, Value(Object{{"a", Object{{"", Object{{long_text, Object{{"", long_text},
                                                                           {long_text, 1}}}}}}}}));
}

// A stream that lacks memory itself raises nothing; it has failed then.
template <class Write>
void expect_whole_or_refused(Write write) {
  std::ostringstream whole;
  write(whole);
  std::string written;
  const auto work = [&] {
    std::ostringstream out;
    write(out);
    written = out.str();
    return out.fail();
  };
  fail_each_allocation(work, [] {});
  EXPECT_EQ(written, whole.str());
}

TEST(ValueMemoryTest, WritingIsWholeOrRefused) {
  expect_whole_or_refused([](std::ostream& out) { out << tree; });
  const Value document(Object{{"a", Object{{"x", long_text}, {"", tree}}}});
  expect_whole_or_refused([&](std::ostream& out) { Json::write_xml(document, out); });
}

}  // namespace
