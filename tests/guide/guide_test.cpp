#include <gtest/gtest.h>

#include "fakes/fake_platform.h"
#include "model/controller.h"

namespace tavelle {
namespace {

using Lines = std::vector<std::string>;

struct GuideTest : testing::Test {
  GuideTest() { platform.files.put("/share/tutorial.html"); }
  ~GuideTest() override = default;

  FakeGuideWindow& window() const { return *platform.guideWindows.made.back(); }
  FakeWebView& page() const { return *platform.webViews.made.back(); }
  std::size_t opened() const { return platform.guideWindows.made.size(); }
  void finish() { page().delegate.webViewDidFinish(page()); }
  void post(const ScriptValue& body) {
    page().delegate.webViewDidReceiveMessage(page(), body);
    platform.mainLoop.turn(0);
  }
  void open() {
    controller.showGuide();
    finish();
  }

  FakePlatform platform;
  Controller controller{platform};
};

TEST_F(GuideTest, ComesOnScreenWhenItsPageHasLoadedOrTakesTooLong) {
  platform.loginItem.now = LoginItemStatus::requiresApproval;
  controller.showGuide();
  EXPECT_EQ(page().loaded, std::vector<std::filesystem::path>{"/share/tutorial.html"});
  EXPECT_EQ(page().folder, "/share");
  EXPECT_EQ(page().settings.messageHandler, "app");
  platform.mainLoop.turn(1.49);
  EXPECT_FALSE(window().isVisible());
  platform.mainLoop.turn(0.01);
  EXPECT_TRUE(window().isVisible());
  finish();
  EXPECT_EQ(page().scripts, Lines{"goTo(0); setLogin(false)"});
  EXPECT_EQ(window().shown, 1);

  controller.applicationShouldHandleReopen();
  EXPECT_EQ(page().scripts.back(), "goTo(0)");
  EXPECT_EQ(window().shown, 2);
  EXPECT_EQ(opened(), 1U);
}

TEST_F(GuideTest, ClosedAndOpenedAgainItIsANewOneWithItsOwnTime) {
  controller.showGuide();
  platform.mainLoop.turn(1);
  window().performClose();
  // Even before the closed one has been cleared away.
  platform.loginItem.now = LoginItemStatus::enabled;
  controller.showGuide();
  EXPECT_EQ(opened(), 2U);
  platform.mainLoop.turn(1);
  EXPECT_FALSE(window().isVisible());
  finish();
  EXPECT_EQ(page().scripts, Lines{"goTo(0); setLogin(true)"});
}

TEST_F(GuideTest, ObeysNothingButTheWordsItKnows) {
  open();
  for (const auto& body : {ScriptValue{"Close"}, {1.0}}) {
    post(body);
    controller.showGuide();
    EXPECT_EQ(opened(), 1U) << body.value.index();
  }
  post({"close"});
  controller.showGuide();
  EXPECT_EQ(opened(), 2U);
}

TEST_F(GuideTest, APageThatCrashesIsLoadedAgainOnce) {
  open();
  page().delegate.webViewProcessDidTerminate(page());
  EXPECT_EQ(page().reloads, 1);
  finish();
  EXPECT_EQ(page().scripts.size(), 2U);
  page().delegate.webViewProcessDidTerminate(page());
  controller.showGuide();
  EXPECT_EQ(opened(), 2U);
  page().delegate.webViewDidFail(page(), {"no"});
  EXPECT_EQ(platform.log(), (Lines{"guide: page process ended; reloading", "guide: page process ended again; closing",
                                   "guide: load failed: no"}));
  controller.showGuide();
  EXPECT_EQ(opened(), 3U);
}

TEST_F(GuideTest, WithoutItsPageItStaysClosed) {
  platform.files.remove("/share/tutorial.html");
  controller.showGuide();
  EXPECT_EQ(opened(), 0U);
  EXPECT_EQ(platform.log(), Lines{"tutorial.html is missing from the app bundle"});
}

TEST_F(GuideTest, OpensByItselfALittleAfterTheFirstLaunch) {
  platform.defaults.remove("guideShown");
  controller.applicationDidFinishLaunching();
  // Remembered before it opens, so that a launch that ends early does not bring it back.
  EXPECT_TRUE(platform.defaults.boolean("guideShown"));
  platform.mainLoop.turn(0.79);
  EXPECT_EQ(opened(), 0U);
  platform.mainLoop.turn(0.01);
  EXPECT_EQ(opened(), 1U);
}

}  // namespace
}  // namespace tavelle
