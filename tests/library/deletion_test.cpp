#include <gtest/gtest.h>

#include "fakes/fake_platform.h"
#include "model/controller.h"
#include "playback/page_scripts.h"

namespace tavelle {
namespace {

using Lines = std::vector<std::string>;

struct Deletion : testing::Test {
  void launchWith(const Lines& library, const Lines& recents) {
    for (const auto& name : library) platform.addWallpaper(name);
    platform.defaults.set("wallpaper", recents.front());
    platform.defaults.set("recentWallpapers", recents);
    controller.applicationDidFinishLaunching();
    platform.files.put("/home/Library/Logs/Tavelle.log");
  }
  Wallpaper wallpaper(const std::string& name) { return {{controller.library() / name}}; }

  FakePlatform platform;
  Controller controller{platform};
};

TEST_F(Deletion, AsksFirst) {
  launchWith({"Waves"}, {"Waves"});
  platform.alerts.answer = 1;
  controller.deleteWallpaper(wallpaper("Waves"));
  EXPECT_EQ(controller.wallpapers().size(), 1U);
  EXPECT_EQ(platform.log(), Lines{});
  EXPECT_EQ(platform.alerts.shown.back().message, "Delete “Waves”?");
  EXPECT_EQ(platform.alerts.shown.back().buttons, (Lines{"Move to Trash", "Cancel"}));
}

TEST_F(Deletion, ShowsTheNextOneInThePlaceOfTheOneOnShow) {
  launchWith({"Aurora", "Dunes", "Waves"}, {"Waves", "Gone", "Dunes"});
  EXPECT_TRUE(controller.trash(wallpaper("Aurora")));
  EXPECT_EQ(platform.log(), Lines{"deleted Aurora"}) << "playback goes on";
  EXPECT_TRUE(controller.trash(wallpaper("Waves")));
  EXPECT_EQ(controller.current()->name(), "Dunes");
  EXPECT_EQ(platform.defaults.stringArray("recentWallpapers"), (Lines{"Dunes", "Gone"}));
  EXPECT_EQ(platform.log(), (Lines{"deleted Aurora", "deleted Waves", "showing Dunes"}));
  EXPECT_TRUE(controller.trash(wallpaper("Dunes")));
  EXPECT_FALSE(controller.current());
  EXPECT_EQ(platform.defaults.string("wallpaper"), std::nullopt);
  for (const auto* window : platform.windows.made) EXPECT_FALSE(window->visible);
  for (const auto* page : platform.webViews.made) EXPECT_EQ(page->scripts.back(), pauseJS) << "nothing is heard";
}

TEST_F(Deletion, TellsWhatWentWrongAndChangesNothing) {
  launchWith({"Waves"}, {"Waves"});
  platform.files.full.insert("/home/Pictures/Wallpapers/Waves");
  EXPECT_FALSE(controller.trash(wallpaper("Waves")));
  EXPECT_EQ(platform.log(), Lines{"couldn't delete Waves: can't trash"});
  EXPECT_EQ(platform.alerts.shown.back().message, "Couldn't delete “Waves”");
  EXPECT_EQ(platform.alerts.shown.back().information, "can't trash");
  EXPECT_EQ(controller.current()->name(), "Waves");
  EXPECT_EQ(platform.defaults.stringArray("recentWallpapers"), Lines{"Waves"});
}

}  // namespace
}  // namespace tavelle
