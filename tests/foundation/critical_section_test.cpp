#include <gtest/gtest.h>
#include <vrelio/foundation/critical_section.h>

#include <thread>

namespace {

TEST(VCriticalSectionTest, KeepsASecondThreadOut) {
  VCriticalSection section;
  int count = 0;
  const auto work = [&] {
    for (int i = 0; i < 20000; ++i) {
      section.lock();
      count = count + 1;
      section.unlock();
    }
  };
  std::thread first(work);
  std::thread second(work);
  first.join();
  second.join();
  EXPECT_EQ(count, 40000);
}

TEST(VCriticalSectionTest, OneThreadMayEnterTwice) {
  VCriticalSection section;
  section.lock();
  section.lock();
  section.unlock();
  section.unlock();
  std::thread([&] {
    section.lock();
    section.unlock();
  }).join();
}

}  // namespace
