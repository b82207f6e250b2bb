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

TEST(PropXmlExportTest, AnOpenElementIsNotTaken) {
  VPropXmlExport visitor(vrel_xml_root);
  visitor.visit(VProp(VPropstruct()));
  visitor.visit(VProp(VPropstruct()));
  EXPECT_VREL_ERROR(visitor.take_element(), "Internal error!", -1);
}

}  // namespace
