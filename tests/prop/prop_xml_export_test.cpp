// The visitor that writes, as its caller holds it.
#include <gtest/gtest.h>
#include <vrelio/prop/prop_xml.h>

#include "prop/xml_dom_internal.h"
#include "support/expect_error.h"

namespace {

TEST(PropXmlExportTest, WithoutAValueThereIsNoElement) {
  EXPECT_VREL_ERROR(VPropXmlExport(vrel_xml_root).take_element(), "Internal error!", -1);
}

TEST(PropXmlExportTest, AnElementIsTakenOnce) {
  VPropXmlExport visitor(vrel_xml_root);
  visitor.process(VProp(1));
  EXPECT_EQ(visitor.take_element().text(), "1");
  EXPECT_VREL_ERROR(visitor.take_element(), "Internal error!", -1);
}

TEST(PropXmlExportTest, ATextNeedsAnOpenElement) {
  VPropXmlExport visitor(vrel_xml_root);
  EXPECT_VREL_ERROR(visitor.visit(VPropstring(L"x")), "Internal error!", -1);
  visitor.visit(VProp(1));
  visitor.take_element();
  EXPECT_VREL_ERROR(visitor.visit(VPropstring(L"x")), "Internal error!", -1);
}

TEST(PropXmlExportTest, AnExitNeedsAnOpenElement) {
  VPropXmlExport visitor(vrel_xml_root);
  EXPECT_VREL_ERROR(visitor.visit_exit(VProp(1)), "Internal error!", -1);
}

TEST(PropXmlExportTest, TheOutermostElementStaysWhenItIsLeft) {
  VPropXmlExport visitor(vrel_xml_root);
  visitor.visit(VProp(1));
  EXPECT_TRUE(visitor.visit_exit(VProp(1)));
  EXPECT_TRUE(visitor.visit_exit(VProp(1)));
  EXPECT_EQ(visitor.take_element().text(), "1");
}

TEST(PropXmlExportTest, AnElementOfAStructArrayNeedsNone) {
  VPropXmlExport visitor(vrel_xml_root);
  EXPECT_EQ(visitor.visit(VPropstruct()), VPropVisitor::visit_go);
  EXPECT_EQ(visitor.visit_exit(VPropstruct()), VPropVisitor::visit_go);
}

TEST(PropXmlExportTest, AnOpenElementIsNotTaken) {
  VPropXmlExport visitor(vrel_xml_root);
  visitor.visit(VProp(VPropstruct()));
  visitor.visit(VProp(VPropstruct()));
  EXPECT_VREL_ERROR(visitor.take_element(), "Internal error!", -1);
}

}  // namespace
