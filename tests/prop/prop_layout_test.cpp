// What linked programs rely on: sizes, and the order of virtual functions.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_visitor.h>

#include <boost/make_shared.hpp>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

class VPropInfo {};

// Arrays and visitors have no virtual destructor.
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

// The words that an object begins with.
template <class T>
std::vector<std::uintptr_t> words(const T& object, std::size_t count) {
  std::vector<std::uintptr_t> found(count);
  std::memcpy(found.data(), static_cast<const void*>(&object), count * sizeof found[0]);
  return found;
}

TEST(PropLayoutTest, InAHandleTheValueStandsInFrontOfTheAnnotation) {
  const VProp value(1);
  EXPECT_NE(words(value, 4)[1], 0U);
  EXPECT_EQ(words(value, 4)[2], 0U);
  const VProp annotated;
  const auto info = boost::make_shared<VPropInfo>();
  annotated.set_info(info);
  EXPECT_EQ(words(annotated, 4)[1], 0U);
  EXPECT_EQ(words(annotated, 4)[2], reinterpret_cast<std::uintptr_t>(info.get()));
}

TEST(PropLayoutTest, NoDestructorTakesASlot) {
  EXPECT_FALSE(std::has_virtual_destructor_v<VProp>);
  EXPECT_FALSE(std::has_virtual_destructor_v<VProparrayBase>);
  EXPECT_FALSE(std::has_virtual_destructor_v<VPropPos>);
  EXPECT_FALSE(std::has_virtual_destructor_v<VPropVisitor>);
}

// Tells which of its operations is called.
struct Array : VProparrayBase {
  unsigned int count() const override { return 7; }
  void resize(unsigned int n, bool clear) override { resized_to = clear ? n : 0; }
  unsigned int resized_to = 0;
};

TEST(PropLayoutTest, AnArrayTellsItsCountInFrontOfResizing) {
  Array array;
  using Count = unsigned int (*)(const void*);
  using Resize = void (*)(void*, unsigned int, bool);
  const std::vector<void*> found = slots(array, 2);
  EXPECT_EQ(reinterpret_cast<Count>(found[0])(&array), 7U);
  reinterpret_cast<Resize>(found[1])(&array, 5, true);
  EXPECT_EQ(array.resized_to, 5U);
}

TEST(PropLayoutTest, AnArrayHasItsBitsInFrontOfItsShape) {
  Array array;
  array.userbits = 0x123456789ABCDEF0;
  std::uint64_t bits = 0;
  std::memcpy(&bits, &words(array, 2)[1], sizeof bits);
  EXPECT_EQ(bits, array.userbits);
  EXPECT_EQ(sizeof(VProparrayBase),
            sizeof(void*) + sizeof bits + sizeof(std::vector<unsigned int>));
  EXPECT_EQ(sizeof(VProparray<int>), sizeof(VProparrayBase) + sizeof(std::vector<int>));
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
