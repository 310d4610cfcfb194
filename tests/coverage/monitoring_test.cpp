#include <gtest/gtest.h>

#include "fakes/fake_platform.h"
#include "model/controller.h"

namespace tavelle {
namespace {

using Lines = std::vector<std::string>;

constexpr Rect left{0, 0, 1920, 1080};
constexpr Rect right{1920, 0, 1280, 1024};

struct Monitoring : testing::Test {
  Monitoring() {
    platform.addWallpaper("Waves");
    controller->applicationDidFinishLaunching();
  }

  /// From now on these are the windows of others on screen.
  void open(const std::vector<Rect>& windows) {
    platform.windowList.windows.emplace();
    for (const Rect& window : windows) platform.windowList.windows->push_back({0, 1, {}, window});
  }

  /// The lines about coverage since the last call.
  Lines news() {
    Lines lines;
    const auto log = platform.log();
    for (; read < log.size(); ++read) {
      if (log[read].starts_with("desktop ")) lines.push_back(log[read]);
    }
    return lines;
  }

  /// Lets time pass and expects so many looks at the windows since the last call.
  void lookedUntil(std::chrono::milliseconds time, int looks) {
    platform.mainLoop.turn(time);
    EXPECT_EQ(platform.windowList.fetches, seen += looks);
  }

  FakePlatform platform;
  std::unique_ptr<Controller> controller = std::make_unique<Controller>(platform);
  std::size_t read = 0;
  int seen = 1;
};

TEST_F(Monitoring, HasOneExactThreshold) {
  // Cells of 40 by 36: all rows but the last, and some columns of the last.
  const std::vector<Rect> points1418{{0, 0, 1920, 1044}, {0, 900, 1040, 180}};
  const std::vector<Rect> points1419{{0, 0, 1920, 1044}, {0, 900, 1080, 180}};
  open(points1419);
  platform.mainLoop.turn(500ms);
  EXPECT_EQ(news(), Lines{"desktop covered on screen 0: paused"});
  open(points1418);
  platform.mainLoop.turn(500ms);
  EXPECT_EQ(news(), Lines{"desktop visible on screen 0: playing"});
}

TEST_F(Monitoring, LooksOnATimerAndTwiceForEachEvent) {
  lookedUntil(10ms, 0);
  platform.workspace.happened();
  lookedUntil(100ms, 1);
  platform.workspace.happened();
  platform.workspace.happened();
  lookedUntil(290ms, 2);
  lookedUntil(20ms, 1);   // 0.4 s after the first event
  lookedUntil(70ms, 0);   // 0.49 s
  lookedUntil(30ms, 3);   // 0.4 s after the other two, and the timer
  lookedUntil(470ms, 0);  // 0.99 s
  lookedUntil(20ms, 1);   // 1.01 s
  controller.reset();
  EXPECT_FALSE(platform.workspace.happened);
  lookedUntil(10000ms, 0);
}

TEST_F(Monitoring, MayBeALittleLateAndMakesUpForNothing) {
  platform.mainLoop.late = true;
  controller->startCoverageWatch();
  lookedUntil(640ms, 1);  // at once
  lookedUntil(20ms, 1);   // 0.66 s
  lookedUntil(480ms, 0);  // 1.14 s: the lateness does not add up
  lookedUntil(20ms, 1);   // 1.16 s
  platform.mainLoop.block(10000ms);
  lookedUntil(0ms, 1);
  lookedUntil(480ms, 0);
  lookedUntil(20ms, 1);
}

TEST_F(Monitoring, StartsAfreshWhenTheWindowsAreRebuiltAndSkipsPagesWhoseScreenHasGone) {
  open({left, right});
  platform.mainLoop.turn(500ms);
  EXPECT_EQ(news().size(), 2U);
  controller->buildWindows();
  platform.mainLoop.turn(500ms);
  EXPECT_EQ(news().size(), 2U);
  platform.screens.screens.pop_back();
  open({});
  platform.mainLoop.turn(500ms);
  EXPECT_EQ(news(), Lines{"desktop visible on screen 0: playing"});
  open({left});
  platform.mainLoop.turn(500ms);
  EXPECT_EQ(news().size(), 1U);
  controller->buildWindows();
  open({});
  platform.mainLoop.turn(500ms);
  EXPECT_EQ(news(), Lines{});
  platform.screens.screens.clear();
  controller->buildWindows();
  platform.mainLoop.turn(500ms);
  EXPECT_EQ(news(), Lines{});
}

}  // namespace
}  // namespace tavelle
