#include "desktop_picture/wallpaper_store.h"
#include "fakes/program_test.h"

namespace tavelle {
namespace {

/// A store with one entry that shows nothing yet. Whoever owns the agent may put it back when the agent restarts.
struct ScheduledSync : ProgramTest {
  ScheduledSync() { putBack(); }
  void putBack() { platform.files.put(store, "<plist><dict><key>SystemDefault</key><dict/></dict></plist>"); }
  void keepPuttingBack() {
    platform.processes.onRun = [this] { putBack(); };
  }
  /// How often the agent has been restarted after each of these moments from now on.
  void expectRestarts(const std::vector<std::pair<std::chrono::milliseconds, std::size_t>>& moments) {
    std::chrono::milliseconds time{0};
    for (const auto& [moment, restarts] : moments) {
      platform.mainLoop.turn(moment - time);
      time = moment;
      EXPECT_EQ(platform.processes.ran.size(), restarts) << "after " << moment.count() << " ms";
    }
  }

  const std::filesystem::path store = wallpaperStore("/home");
};

TEST_F(ScheduledSync, NewestRequestReplacesTheOneThatWaits) {
  controller.scheduleSpacesSync("/a.jpg");
  platform.mainLoop.turn(500ms);
  controller.scheduleSpacesSync("/b.jpg");
  expectRestarts({{1490ms, 0}, {1510ms, 1}});
  // The second look at this one waits now, and is replaced as well.
  putBack();
  controller.scheduleSpacesSync("/c.jpg");
  expectRestarts({{1490ms, 1}, {1510ms, 2}, {60000ms, 2}});
  EXPECT_EQ(platform.log(), (Lines{"desktops: every Space now shows b.jpg", "desktops: every Space now shows c.jpg"}));
  controller.scheduleSpacesSync("/d.jpg");
  end();
  expectRestarts({{60000ms, 2}});
}

TEST_F(ScheduledSync, LooksAgainTwoSecondsAfterAChangeAsOftenAsAllowed) {
  keepPuttingBack();
  controller.scheduleSpacesSync("/still.jpg", 1000ms, 0);
  expectRestarts({{990ms, 0}, {1010ms, 1}, {60000ms, 1}});
  controller.scheduleSpacesSync("/still.jpg", 1000ms, 2);
  expectRestarts({{1010ms, 2}, {2990ms, 2}, {3010ms, 3}, {4990ms, 3}, {5010ms, 4}, {60000ms, 4}});
  // Not after a pass that finds all well: a third would see this.
  platform.processes.onRun = nullptr;
  controller.scheduleSpacesSync("/still.jpg", 1000ms, 3);
  expectRestarts({{3500ms, 5}});
  putBack();
  expectRestarts({{60000ms, 5}});
}

TEST_F(ScheduledSync, LaunchWaitsLongerThanAChoice) {
  for (const char* name : {"Waves", "Plain"}) platform.addWallpaper(name);
  platform.files.put("/home/Pictures/Wallpapers/Waves/still.jpg");
  platform.defaults.set("wallpaper", std::string("Waves"));
  keepPuttingBack();
  controller.applicationDidFinishLaunching();
  expectRestarts({{1990ms, 0}, {2010ms, 1}, {3990ms, 1}, {4010ms, 2}, {60000ms, 2}});
  controller.show(*controller.current());
  expectRestarts({{1490ms, 2}, {1510ms, 3}, {3490ms, 3}, {3510ms, 4}, {60000ms, 4}});
  controller.show(wallpaper("Plain"));
  expectRestarts({{60000ms, 4}});
}

}  // namespace
}  // namespace tavelle
