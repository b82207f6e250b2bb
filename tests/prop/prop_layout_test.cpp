// What linked programs rely on: sizes, and the order of virtual functions.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_visitor.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

// Visitors have no virtual destructor.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

namespace {

// The functions that the table of an object begins with.
template <class T>
std::vector<void*> slots(const T& object, std::size_t count) {
  void* const* table = nullptr;
  std::memcpy(&table, static_cast<const void*>(&object), sizeof table);
  return std::vector<void*>(table, table + count);
}

std::vector<void*> functions(const std::vector<std::string>& names) {
  std::vector<void*> found;
  for (const std::string& name : names) {
    found.push_back(::dlsym(RTLD_DEFAULT, name.c_str()));
    EXPECT_NE(found.back(), nullptr) << name;
  }
  return found;
}

const std::string text = "RKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE";

TEST(PropLayoutTest, AHandleIsFourPointers) { EXPECT_EQ(sizeof(VProp), 4 * sizeof(void*)); }

TEST(PropLayoutTest, AHandleHasTwoSlots) {
  EXPECT_EQ(slots(VProp(), 2), functions({"_ZNK5VProp9value_ptrEv", "_ZN5VProp9value_ptrEv"}));
}

TEST(PropLayoutTest, APositionHasFiveSlots) {
  EXPECT_EQ(
      slots(VPropPos(), 5),
      functions({"_ZN8VPropPos5resetEv", "_ZN8VPropPos6decendE" + text, "_ZN8VPropPos6decendEj",
                 "_ZN8VPropPos7set_keyE" + text, "_ZN8VPropPos6ascendEv"}));
}

TEST(PropLayoutTest, AVisitorHasTenSlots) {
  EXPECT_EQ(
      slots(VPropVisitor(), 10),
      functions({"_ZN8VPropPos5resetEv", "_ZN8VPropPos6decendE" + text, "_ZN8VPropPos6decendEj",
                 "_ZN8VPropPos7set_keyE" + text, "_ZN8VPropPos6ascendEv",
                 "_ZN12VPropVisitor5visitERK11VPropstring",
                 "_ZN12VPropVisitor5visitERK11VPropstruct", "_ZN12VPropVisitor5visitERK5VProp",
                 "_ZN12VPropVisitor10visit_exitERK11VPropstruct",
                 "_ZN12VPropVisitor10visit_exitERK5VProp"}));
}

}  // namespace
