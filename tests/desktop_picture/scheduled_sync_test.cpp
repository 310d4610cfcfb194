#include <gtest/gtest.h>

#include "desktop_picture/wallpaper_store.h"
#include "fakes/fake_platform.h"
#include "model/controller.h"

namespace tavelle {
namespace {

using Lines = std::vector<std::string>;

/// A store with one entry that shows nothing yet. Whoever owns the agent may put it back when the agent restarts.
struct ScheduledSync : testing::Test {
  ScheduledSync() { putBack(); }
  void putBack() { platform.files.put(store, "<plist><dict><key>SystemDefault</key><dict/></dict></plist>"); }
  void keepPuttingBack() {
    platform.processes.onRun = [this] { putBack(); };
  }
  /// How often the agent has been restarted after each of these moments, from now on in seconds.
  void expectRestarts(const std::vector<std::pair<double, std::size_t>>& moments) {
    double time = 0;
    for (const auto& [moment, restarts] : moments) {
      platform.mainLoop.turn(moment - time);
      time = moment;
      EXPECT_EQ(platform.processes.ran.size(), restarts) << "after " << moment << " s";
    }
  }

  FakePlatform platform;
  std::unique_ptr<Controller> controller = std::make_unique<Controller>(platform);
  const std::filesystem::path store = wallpaperStore("/home");
};

TEST_F(ScheduledSync, NewestRequestReplacesTheOneThatWaits) {
  controller->scheduleSpacesSync("/a.jpg");
  platform.mainLoop.turn(0.5);
  controller->scheduleSpacesSync("/b.jpg");
  expectRestarts({{1.49, 0}, {1.51, 1}});
  // The second look at this one waits now, and is replaced as well.
  putBack();
  controller->scheduleSpacesSync("/c.jpg");
  expectRestarts({{1.49, 1}, {1.51, 2}, {60, 2}});
  EXPECT_EQ(platform.log(), (Lines{"desktops: every Space now shows b.jpg", "desktops: every Space now shows c.jpg"}));
  controller->scheduleSpacesSync("/d.jpg");
  controller.reset();
  expectRestarts({{60, 2}});
}

TEST_F(ScheduledSync, LooksAgainTwoSecondsAfterAChangeAsOftenAsAllowed) {
  keepPuttingBack();
  controller->scheduleSpacesSync("/still.jpg", 1, 0);
  expectRestarts({{0.99, 0}, {1.01, 1}, {60, 1}});
  controller->scheduleSpacesSync("/still.jpg", 1, 2);
  expectRestarts({{1.01, 2}, {2.99, 2}, {3.01, 3}, {4.99, 3}, {5.01, 4}, {60, 4}});
  // Not after a pass that finds all well: a third would see this.
  platform.processes.onRun = nullptr;
  platform.processes.ran.clear();
  controller->scheduleSpacesSync("/still.jpg", 1, 3);
  expectRestarts({{3.5, 1}});
  putBack();
  expectRestarts({{60, 1}});
}

TEST_F(ScheduledSync, LaunchWaitsLongerThanAChoice) {
  for (const char* name : {"Waves", "Plain"}) platform.addWallpaper(name);
  platform.files.put("/home/Pictures/Wallpapers/Waves/still.jpg");
  platform.defaults.set("wallpaper", std::string("Waves"));
  keepPuttingBack();
  controller->applicationDidFinishLaunching();
  expectRestarts({{1.99, 0}, {2.01, 1}, {3.99, 1}, {4.01, 2}, {60, 2}});
  controller->show(*controller->current());
  expectRestarts({{1.49, 2}, {1.51, 3}, {3.49, 3}, {3.51, 4}, {60, 4}});
  controller->show({{controller->library() / "Plain"}});
  expectRestarts({{60, 4}});
}

}  // namespace
}  // namespace tavelle
