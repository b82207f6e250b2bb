#include "lib/progress_bar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vrel::tool {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* half_done = "[###############...............]  50 %  1.0 MB/s  1 s left";

// A bar whose time is told by the test.
class ProgressBarTest : public testing::Test {
 protected:
  ProgressBar::Display display() {
    return [this](const std::string& text) { shown.push_back(text); };
  }
  ProgressBar::Clock clock() {
    return [this] { return std::chrono::steady_clock::time_point(now); };
  }

  std::chrono::milliseconds now{1000};
  std::vector<std::string> shown;
};

TEST(ProgressTextTest, ShareRateAndRemainingTimeAreTold) {
  EXPECT_EQ(progress_text(1000000, 2000000, 1s), half_done);
}

TEST(ProgressTextTest, BeginningAndEndAreTold) {
  EXPECT_EQ(progress_text(0, 2000000, 0s),
            "[..............................]   0 %  0.0 MB/s  2000000 s left");
  EXPECT_EQ(progress_text(2000000, 2000000, 2s),
            "[##############################] 100 %  1.0 MB/s  0 s left");
}

TEST(ProgressTextTest, NoWorkIsDoneWork) {
  EXPECT_EQ(progress_text(0, 0, 1s), "[##############################] 100 %  0.0 MB/s  0 s left");
}

TEST_F(ProgressBarTest, ShortWorkShowsNothing) {
  {
    ProgressBar bar(10, display(), clock());
    now += 499ms;
    bar.advance(10);
  }
  EXPECT_THAT(shown, IsEmpty());
}

TEST_F(ProgressBarTest, LongWorkIsShownAndClearedAtTheEnd) {
  {
    ProgressBar bar(2000000, display(), clock());
    now += 1000ms;
    bar.advance(1000000);
  }
  EXPECT_THAT(shown, ElementsAre(std::string("\r\x1B[K") + half_done, "\r\x1B[K"));
}

TEST_F(ProgressBarTest, UpdatesComeAtMostTenTimesASecond) {
  ProgressBar bar(2000, display(), clock());
  for (int i = 0; i < 1000; ++i, now += 1ms) bar.advance(1);
  EXPECT_EQ(shown.size(), 5u);
}

TEST_F(ProgressBarTest, WithoutATerminalNothingIsShown) {
  {
    ProgressBar bar(10, {}, clock());
    now += 10s;
    bar.advance(10);
  }
  EXPECT_THAT(shown, IsEmpty());
}

}  // namespace
}  // namespace Vrel::tool
