#include <gtest/gtest.h>

#include "fakes/program_test.h"

namespace tavelle {
namespace {

using Deletion = ProgramTest;

TEST_F(Deletion, ShowsTheNextOneInThePlaceOfTheOneOnShow) {
  for (const char* name : {"Aurora", "Dunes", "Waves"}) platform.addWallpaper(name);
  platform.defaults.set("wallpaper", std::string("Waves"));
  platform.defaults.set("recentWallpapers", Lines{"Waves", "Gone", "Dunes"});
  launch();
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
}

}  // namespace
}  // namespace tavelle
