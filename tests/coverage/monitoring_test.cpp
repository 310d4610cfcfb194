#include <gtest/gtest.h>

#include "fakes/program_test.h"

namespace tavelle {
namespace {

constexpr Rect left{0, 0, 1920, 1080};
constexpr Rect right{1920, 0, 1280, 1024};

struct Monitoring : ProgramTest {
  Monitoring() {
    platform.addWallpaper("Waves");
    controller.applicationDidFinishLaunching();
  }

  /// Lets time pass and expects so many looks at the windows since the last call.
  void lookedUntil(std::chrono::milliseconds time, int looks) {
    platform.mainLoop.turn(time);
    EXPECT_EQ(platform.windowList.fetches, seen += looks);
  }

  int seen = 1;
};

TEST_F(Monitoring, LooksOnATimerAndTwiceForEachEvent) {
  lookedUntil(10ms, 0);
  platform.workspace.happened();
  lookedUntil(390ms, 1);
  lookedUntil(20ms, 1);  // 0.41 s after the event
  lookedUntil(70ms, 0);  // 0.49 s after the launch
  lookedUntil(20ms, 1);
  end();
  EXPECT_FALSE(platform.workspace.happened);
  lookedUntil(10000ms, 0);
}

TEST_F(Monitoring, MayBeALittleLateAndMakesUpForNothing) {
  platform.mainLoop.late = true;
  controller.startCoverageWatch();
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
  const std::string covered = "desktop covered on screen 0: paused";
  const std::string visible = "desktop visible on screen 0: playing";
  using Case = std::tuple<bool, std::size_t, std::vector<Rect>, Lines>;
  for (const auto& [rebuilds, screens, windows, log] :
       {Case{false, 2, {left}, {covered}},
        {true, 2, {left}, {"showing on 2 display(s)", covered}},
        {false, 2, {right}, {visible, "desktop covered on screen 1: paused"}},
        {false, 1, {left}, {covered}},
        {false, 1, {}, {visible}},
        {false, 1, {left}, {covered}},
        {true, 1, {}, {"showing on 1 display(s)"}},
        {true, 0, {}, {"showing on 0 display(s)"}}}) {
    platform.files.put("/home/Library/Logs/Tavelle.log");
    platform.screens.screens.resize(screens);
    platform.windowList.windows.emplace();
    for (const Rect& window : windows) platform.windowList.windows->push_back({0, 1, {}, window});
    if (rebuilds) controller.buildWindows();
    platform.mainLoop.turn(500ms);
    EXPECT_EQ(platform.log(), log);
  }
}

}  // namespace
}  // namespace tavelle
