// What a value points to, as programs that were linked before know it: its members and the order of its
// virtual functions.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include "prop/holder_internal.h"

namespace {

// Writes down which of its functions is called.
class Spy final : public VProp::placeholder {
 public:
  explicit Spy(std::vector<std::string>& calls) : calls_(calls) {}
  const std::type_info& type() const override {
    calls_.emplace_back("type");
    return typeid(Spy);
  }
  void* value_ptr() override {
    calls_.emplace_back("value");
    return nullptr;
  }
  const void* value_ptr() const override {
    calls_.emplace_back("const value");
    return nullptr;
  }
  placeholder* clone() const override {
    calls_.emplace_back("clone");
    return nullptr;
  }
  int get_id() const override {
    calls_.emplace_back("id");
    return 0;
  }

 private:
  std::vector<std::string>& calls_;
};

TEST(PropHolderTest, ItsFunctionsStandBehindItsDestructor) {
  std::vector<std::string> calls;
  Spy spy(calls);
  void* const* table = nullptr;
  std::memcpy(&table, static_cast<const void*>(&spy), sizeof table);
  constexpr std::size_t slots_of_destructor = 2;
  for (std::size_t slot = 0; slot < 5; ++slot) {
    reinterpret_cast<void* (*)(void*)>(table[slots_of_destructor + slot])(&spy);
  }
  EXPECT_EQ(calls, (std::vector<std::string>{"type", "value", "const value", "clone", "id"}));
}

TEST(PropHolderTest, ANewOneIsCountedOnceAndNotLocked) {
  const VProp::holder<int> holder(7);
  EXPECT_EQ(holder.use_count, 1);
  EXPECT_FALSE(holder.locked);
}

TEST(PropHolderTest, ACopyIsCountedOnceAndNotLocked) {
  VProp::holder<int> holder(7);
  holder.use_count = 3;
  holder.locked = true;
  const std::unique_ptr<VProp::placeholder> copy(holder.clone());
  EXPECT_EQ(copy->use_count, 1);
  EXPECT_FALSE(copy->locked);
  EXPECT_EQ(*static_cast<int*>(copy->value_ptr()), 7);
  EXPECT_EQ(copy->get_id(), 32);
}

TEST(PropHolderTest, TheCountStandsInFrontOfTheLock) {
  VProp::holder<int> holder(7);
  holder.use_count = 0x1234;
  holder.locked = true;
  char bytes[sizeof(void*) + sizeof(std::int32_t) + 1];
  std::memcpy(bytes, static_cast<const void*>(&holder), sizeof bytes);
  std::int32_t count = 0;
  std::memcpy(&count, bytes + sizeof(void*), sizeof count);
  EXPECT_EQ(count, 0x1234);
  EXPECT_EQ(bytes[sizeof bytes - 1], 1);
}

}  // namespace
