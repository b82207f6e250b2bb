#include <gtest/gtest.h>
#include <vrelio/foundation/critical_section.h>

#include <functional>
#include <new>
#include <thread>

namespace {

// What two threads count to that add 20000 each, one behind each of two sections.
int count_behind(VCriticalSection& one, VCriticalSection& other) {
  int count = 0;
  const auto work = [&count](VCriticalSection& section) {
    for (int i = 0; i < 20000; ++i) {
      section.lock();
      count = count + 1;
      section.unlock();
    }
  };
  std::thread first(work, std::ref(one));
  std::thread second(work, std::ref(other));
  first.join();
  second.join();
  return count;
}

// A copy whose destructor never runs: only one of those that name a system object may delete it.
class Alias {
 public:
  explicit Alias(const VCriticalSection& source)
      : section_(new (place_) VCriticalSection(source)) {}
  VCriticalSection& section() { return *section_; }

 private:
  alignas(VCriticalSection) unsigned char place_[sizeof(VCriticalSection)];
  VCriticalSection* section_;
};

TEST(VCriticalSectionTest, KeepsASecondThreadOut) {
  VCriticalSection section;
  EXPECT_EQ(count_behind(section, section), 40000);
}

TEST(VCriticalSectionTest, ACopyIsTheSameLock) {
  VCriticalSection section;
  Alias copy(section);
  EXPECT_EQ(count_behind(section, copy.section()), 40000);
}

TEST(VCriticalSectionTest, AnAssignedSectionIsTheSameLock) {
  VCriticalSection former;
  Alias assigned(former);
  VCriticalSection section;
  assigned.section() = section;
  EXPECT_EQ(count_behind(section, assigned.section()), 40000);
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
