// The running application's playback on a fake desktop: windows, pages, play state, frame settings, show.

#include <gtest/gtest.h>

#include "fakes/program_test.h"
#include "playback/page_scripts.h"

namespace tavelle {
namespace {

using namespace std::string_literals;

ScriptValue numbers(std::initializer_list<double> values) {
  ScriptArray array;
  for (const double value : values) array.push_back({value});
  return {array};
}

struct Playback : ProgramTest {
  Playback() {
    platform.addWallpaper("Waves");
    launch();
  }
  FakeWebView& page(std::size_t index) { return *platform.webViews.made.at(platform.webViews.made.size() - 2 + index); }
};

TEST_F(Playback, RebuildsOnceAfterABurstOfChanges) {
  platform.screens.changed();
  platform.mainLoop.turn(1000ms);
  EXPECT_EQ(platform.log(), Lines{}) << "nothing about the screens is different";

  for (const double width : {800.0, 1024.0, 1366.0}) {
    platform.screens.screens[1].frame.width = width;
    platform.screens.changed();
    platform.mainLoop.turn(200ms);
  }
  platform.mainLoop.turn(290ms);
  EXPECT_EQ(platform.log(), Lines{});
  platform.mainLoop.turn(20ms);
  EXPECT_EQ(platform.log(), Lines{"showing on 2 display(s)"});
}

TEST_F(Playback, ReportsWhatHappensInPages) {
  WebViewDelegate& delegate = page(0).delegate;
  delegate.webViewDidFail(page(0), Error{"gone"});
  delegate.webViewProcessDidTerminate(page(1));
  for (const auto& body : {ScriptValue{2.5}, {true}, {}, numbers({1, 2}), {ScriptObject{"{\"a\":1}"}}}) {
    delegate.webViewDidReceiveMessage(page(0), body);
  }
  delegate.webViewDidFinish(page(1));
  page(1).answer(ScriptValue{"{\"title\":\"x\"}"s});
  page(1).answer(Error{"script failed"});
  EXPECT_EQ(platform.log(),
            (Lines{"load failed: gone", "web content process ended; reloading", "page: 2.5", "page: true", "page: nil",
                   "page: [1, 2]", "page: {\"a\":1}", "loaded: {\"title\":\"x\"}", "loaded: nil"}));
  EXPECT_EQ(std::pair(page(0).reloads, page(1).reloads), std::pair(0, 1));
}

TEST_F(Playback, RestsWhilePausedAndWhereCovered) {
  using Case = std::tuple<bool, bool, std::string_view, std::string_view>;
  // From each to the next one thing changes; the windows cover the first screen only.
  for (const auto& [paused, covered, first, second] : {Case{true, false, pauseJS, pauseJS},
                                                       {true, true, pauseJS, pauseJS},
                                                       {false, true, pauseJS, playJS},
                                                       {false, false, playJS, playJS},
                                                       {false, true, pauseJS, playJS},
                                                       {true, true, pauseJS, pauseJS},
                                                       {true, false, pauseJS, pauseJS}}) {
    if (paused != controller.paused()) controller.togglePause();
    platform.windowList.windows->assign(covered ? 1 : 0, {0, 1, {}, platform.screens.screens[0].frame});
    controller.checkCoverage();
    EXPECT_EQ(page(0).scripts.back(), first) << paused << covered;
    EXPECT_EQ(page(1).scripts.back(), second) << paused << covered;
    page(0).delegate.webViewDidFinish(page(0));
    EXPECT_EQ(page(0).scripts.rbegin()[1], first) << "a page that has just loaded";
  }
  controller.applyPlayState(5);
  EXPECT_EQ(platform.log().front(), "paused");
  EXPECT_EQ(platform.log()[2], "resumed");
}

TEST_F(Playback, TakesOnlySensibleFrameSettings) {
  using Rate = std::pair<std::int64_t, std::int64_t>;
  for (const auto& [stored, rate] : {Rate{19, 60}, {20, 20}, {45, 45}, {61, 60}}) {
    platform.defaults.set("fps", stored);
    EXPECT_EQ(controller.frameSettings().frameRate, rate);
  }
  for (const auto& [stored, scale] :
       {std::pair(0.24, 1.0), {0.25, 0.25}, {1.5, 1.0}, {std::numeric_limits<double>::quiet_NaN(), 1.0}}) {
    platform.defaults.set("resolutionScale", stored);
    EXPECT_EQ(controller.frameSettings().resolutionScale, scale);
  }
}

TEST_F(Playback, AppliesFrameSettingsToEveryPageNowAndAtTheNextLoad) {
  controller.chooseFrameRate(30);
  controller.chooseResolution(0.35);
  EXPECT_TRUE(page(1).settings.userScripts.at(1).ends_with("(window, 30, 0.35);"));
  EXPECT_EQ(page(1).scripts.back(), "window.tavelle && tavelle.set(30, 0.35); 0");
}

TEST_F(Playback, MeasuresTheFirstScreensPage) {
  for (const std::size_t screen : {1, 0}) page(screen).delegate.webViewDidFinish(page(screen));
  platform.mainLoop.turn(2000ms);
  EXPECT_EQ(page(1).scripts.back(), probeJS);
  ASSERT_EQ(page(0).scripts.size(), 3U) << "once, and for its own load";
  EXPECT_EQ(page(0).scripts.back(), samplingJS);
  page(0).answer(numbers({100, 5000, 1728, 1117}));
  platform.mainLoop.turn(3000ms);
  const auto answer = page(0).answers.back();
  controller.togglePause();
  const ScriptValue texts{ScriptArray{{1.0}, {2000.0}, {"x"s}, {4.0}}};
  for (const auto& odd : {Result<ScriptValue>(texts), {ScriptValue{0.0}}, {numbers({1, 2, 3})}, {Error{"gone"}}})
    answer(odd);
  EXPECT_EQ(platform.log().back(), "paused") << "nothing is told of an odd answer";
  answer(numbers({189.0, 7990, 1728, 1117}));
  EXPECT_EQ(platform.log().back(), "measured 29.8 FPS (setting 60, paused), canvas 1728x1117");
  controller.chooseFrameRate(60);
  page(0).answer(numbers({1, 1000, 0, 0}));
  controller.buildWindows();
  platform.mainLoop.turn(10000ms);
  EXPECT_EQ(page(0).scripts, Lines{}) << "the page that was measured has gone";
}

TEST_F(Playback, ShowsAWallpaperEverywhere) {
  platform.addWallpaper("Dunes");
  platform.files.put("/home/Pictures/Wallpapers/Dunes/still.jpg");
  platform.desktopPicture.refusing = "left";
  controller.show(wallpaper("Dunes"));
  EXPECT_EQ(platform.log(), (Lines{"couldn't set the System Settings wallpaper: no", "showing Dunes"}));
  EXPECT_EQ(platform.desktopPicture.pictures.at("right"), controller.library() / "Dunes/still.jpg");
  EXPECT_EQ(platform.defaults.string("wallpaper"), "Dunes");
  EXPECT_EQ(platform.defaults.stringArray("recentWallpapers"), (Lines{"Dunes", "Waves"}));
  EXPECT_EQ(page(1).loaded.back(), controller.library() / "Dunes/index.html");
  EXPECT_EQ(platform.windows.made.size(), 2U) << "the windows are kept";

  controller.show(wallpaper("Waves"));
  controller.show(wallpaper("Waves"));
  EXPECT_EQ(page(0).loaded.size(), 4U);
  EXPECT_EQ(platform.desktopPicture.pictures.at("right").parent_path().filename(), "Dunes") << "Waves has no still";
}

}  // namespace
}  // namespace tavelle
