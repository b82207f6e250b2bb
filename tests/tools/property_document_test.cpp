#include "lib/property_document.h"

#include <gtest/gtest.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>
#include <vrelio/prop/prop_xml.h>

#include <algorithm>
#include <complex>
#include <string>
#include <utility>

#include "support/expect_error.h"

namespace Vrel::tool {
namespace {

Source source_of(const std::string& text) {
  return [text, at = std::size_t{0}](char* buffer, std::size_t size) mutable {
    const std::size_t count = text.copy(buffer, std::min<std::size_t>(7, size), at);
    at += count;
    return count;
  };
}

VPropstring utf8(const char* text) { return {text, VPropstring::encoding_utf8}; }

// --- Documents

TEST(PropertyDocumentTest, BothFormsAreReadAndWrittenAgain) {
  VProp tree;
  tree["a"] = 1;
  for (const int format : {vrel_xml_data, vrel_xml_root}) {
    std::string xml;
    vrel_export_xml(xml, tree, format);
    const PropertyDocument document = read_property_document(source_of(xml));
    EXPECT_EQ(document.format, format);
    EXPECT_EQ(document.tree, tree);
    EXPECT_EQ(to_xml(document), xml + '\n');
  }
}

TEST(PropertyDocumentTest, WhatIsNoDocumentIsRefused) {
  EXPECT_THROW(read_property_document(source_of("")), VrelError);
  EXPECT_THROW(read_property_document(source_of("<root")), VrelError);
  EXPECT_VREL_ERROR(read_property_document(source_of("<data/>")), "Could not determine xml format!",
                    -1);
}

TEST(PropertyDocumentTest, AnEndlessInputIsRefused) {
  const Source blanks = [](char* buffer, std::size_t size) {
    std::fill_n(buffer, size, ' ');
    return size;
  };
  EXPECT_THROW(read_property_document(blanks), VrelError);
}

// --- Assignments

VProp assigned(VProp tree, const std::string& assignment) {
  assign(tree, assignment);
  return tree;
}

TEST(PropertyAssignmentTest, AValueKeepsItsKind) {
  VProp tree;
  tree["u"] = static_cast<unsigned short>(1);
  tree["d"] = 1.0;
  tree["t"] = utf8("x");
  tree["b"] = true;
  tree["z"] = std::complex<float>(1, 2);
  EXPECT_EQ(assigned(tree, "u=65535")["u"], VProp(static_cast<unsigned short>(65535)));
  EXPECT_EQ(assigned(tree, "d=7")["d"], VProp(7.0));
  EXPECT_EQ(assigned(tree, "d=-Inf")["d"].get<double>() < 0, true);
  EXPECT_EQ(assigned(tree, "t=12")["t"], VProp(utf8("12")));
  EXPECT_EQ(assigned(tree, "t=a=\xC2\xB5")["t"], VProp(utf8("a=\xC2\xB5")));
  EXPECT_EQ(assigned(tree, "b=false")["b"], VProp(false));
  EXPECT_EQ(assigned(tree, "b=0")["b"], VProp(false));
  EXPECT_EQ(assigned(tree, "z=(-1,.5)")["z"], VProp(std::complex<float>(-1, 0.5F)));
}

TEST(PropertyAssignmentTest, AnArrayKeepsItsShapeAndBits) {
  VProparray<int> array(4, 0);
  array.set_size({2, 2}, VProparrayBase::set_mode_checked);
  array.userbits = 6;
  VProp tree;
  tree["a"] = array;
  const VProp changed = assigned(tree, "a=1 2 3 4");
  const auto& read = changed["a"].get<VProparray<int>>();
  EXPECT_EQ(std::vector<int>(read), (std::vector<int>{1, 2, 3, 4}));
  EXPECT_EQ(read.get_size(true), array.get_size(true));
  EXPECT_EQ(read.userbits, 6U);
}

TEST(PropertyAssignmentTest, WhatIsNoValueOfTheKindChangesNothing) {
  VProp tree;
  tree["u"] = static_cast<unsigned char>(1);
  tree["d"] = 1.0;
  tree["b"] = true;
  tree["z"] = std::complex<float>(1, 2);
  tree["a"] = VProparray<int>{1, 2};
  tree["s.x"] = 1;
  const VProp before(tree);
  for (const char* assignment : {"u=256",  "u=-1",   "u=",    "u=1 ", "u=1.5", "d=x",
                                 "d=1.5x", "d=inf",  "d=0x1", "b=2",  "b=yes", "z=1",
                                 "z=(1)",  "z=(1,2", "z=()",  "z=",   "a=1",   "a=1 2 3",
                                 "a=1  2", "a=1 2 ", "a=1 x", "a=",   "s=1"}) {
    EXPECT_THROW(assign(tree, assignment), VrelError) << assignment;
    EXPECT_EQ(tree, before) << assignment;
  }
  EXPECT_VREL_ERROR(assign(tree, "u=256"), "'256' is no value of the kind uint8!", -1);
  EXPECT_VREL_ERROR(assign(tree, "a=1"), "'1' is no value of the kind 2 x int32!", -1);
}

TEST(PropertyAssignmentTest, ANewValueIsWhatItLooksLike) {
  EXPECT_EQ(assigned(VProp(), "a.b=7"), assigned(VProp(), "a.b=7"));
  EXPECT_EQ(assigned(VProp(), "a=7")["a"], VProp(7));
  EXPECT_EQ(assigned(VProp(), "a=3000000000")["a"], VProp(3000000000LL));
  EXPECT_EQ(assigned(VProp(), "a=1e3")["a"], VProp(1000.0));
  EXPECT_EQ(assigned(VProp(), "a=true")["a"], VProp(true));
  EXPECT_EQ(assigned(VProp(), "a=1x")["a"], VProp(utf8("1x")));
  EXPECT_EQ(assigned(VProp(), "a=")["a"], VProp(utf8("")));
  EXPECT_EQ(assigned(VProp(), "=7"), VProp(7));
}

TEST(PropertyAssignmentTest, AnAssignmentHasASign) {
  VProp tree;
  EXPECT_VREL_ERROR(assign(tree, "a"), "'a' is not of the form PATH=VALUE!", -1);
}

TEST(PropertyAssignmentTest, APathThatIsNoneCreatesNothing) {
  VProp tree;
  EXPECT_THROW(assign(tree, "a.b.1=2"), VrelError);
  EXPECT_TRUE(tree.empty());
}

}  // namespace
}  // namespace Vrel::tool
