#include <gtest/gtest.h>

#include "fakes/fake_platform.h"
#include "model/controller.h"

namespace tavelle {
namespace {

using Lines = std::vector<std::string>;

struct GuideTest : testing::Test {
  GuideTest() { platform.files.put("/share/tutorial.html"); }

  FakeGuideWindow& window() const { return *platform.guideWindows.made.back(); }
  FakeWebView& page() const { return *platform.webViews.made.back(); }
  std::size_t opened() const { return platform.guideWindows.made.size(); }
  void finish() { page().delegate.webViewDidFinish(page()); }

  FakePlatform platform;
  Controller controller{platform};
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
  platform.loginItem.now = LoginItemStatus::enabled;
  finish();
  EXPECT_EQ(page().scripts.back(), "goTo(0); setLogin(true)");

  controller.applicationShouldHandleReopen();
  EXPECT_EQ(page().scripts.back(), "goTo(0)");
  EXPECT_EQ(window().shown, 2);
  EXPECT_EQ(opened(), 1U);
}

TEST_F(GuideTest, ObeysNothingButTheWordsItKnows) {
  controller.showGuide();
  for (const auto& [body, windows] : {std::pair(ScriptValue{"Close"}, 1U), {{1.0}, 1U}, {{"close"}, 2U}}) {
    page().delegate.webViewDidReceiveMessage(page(), body);
    platform.mainLoop.turn(0ms);
    controller.showGuide();
    EXPECT_EQ(opened(), windows) << body.value.index();
  }
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

TEST_F(GuideTest, OpensByItselfALittleAfterTheFirstLaunch) {
  platform.defaults.remove("guideShown");
  controller.applicationDidFinishLaunching();
  // Remembered before it opens, so that a launch that ends early does not bring it back.
  EXPECT_TRUE(platform.defaults.boolean("guideShown"));
  EXPECT_EQ(opened(), 0U);
  platform.mainLoop.turn(800ms);
  EXPECT_EQ(opened(), 1U);
}

}  // namespace
}  // namespace tavelle
