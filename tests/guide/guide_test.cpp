#include <gtest/gtest.h>

#include "fakes/program_test.h"

namespace tavelle {
namespace {

struct GuideTest : ProgramTest {
  GuideTest() { platform.files.put("/share/tutorial.html"); }

  FakeGuideWindow& window() const { return *platform.guideWindows.made.back(); }
  FakeWebView& page() const { return *platform.webViews.made.back(); }
  std::size_t opened() const { return platform.guideWindows.made.size(); }
  void finish() { page().delegate.webViewDidFinish(page()); }
};

TEST_F(GuideTest, ComesOnScreenWhenItsPageHasLoadedOrTakesTooLong) {
  platform.loginItem.now = LoginItemStatus::requiresApproval;
  controller.showGuide();
  platform.mainLoop.turn(1490ms);
  EXPECT_FALSE(window().isVisible());
  platform.mainLoop.turn(10ms);
  EXPECT_TRUE(window().isVisible());
  finish();
  EXPECT_EQ(page().scripts, Lines{"goTo(0); setLogin(false)"});
  EXPECT_EQ(window().shown, 1);
  controller.applicationShouldHandleReopen();
  EXPECT_EQ(page().scripts.back(), "goTo(0)");
  EXPECT_EQ(window().shown, 2);
  EXPECT_EQ(opened(), 1U);
}

TEST_F(GuideTest, APageThatCrashesIsLoadedAgainOnce) {
  controller.showGuide();
  page().delegate.webViewProcessDidTerminate(page());
  EXPECT_EQ(page().reloads, 1);
  finish();
  EXPECT_EQ(page().scripts.size(), 1U);
  page().delegate.webViewProcessDidTerminate(page());
  controller.showGuide();
  EXPECT_EQ(opened(), 2U);
  page().delegate.webViewDidFail(page(), {"no"});
  EXPECT_EQ(platform.log(), (Lines{"guide: page process ended; reloading", "guide: page process ended again; closing",
                                   "guide: load failed: no"}));
  controller.showGuide();
  EXPECT_EQ(opened(), 3U);
}

}  // namespace
}  // namespace tavelle
