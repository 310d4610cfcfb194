#include <gtest/gtest.h>

#include <algorithm>

#include "fakes/program_test.h"
#include "platform/status_item.h"

namespace tavelle {
namespace {

struct StatusMenu : ProgramTest {
  const MenuItem& item(const std::string& title) {
    platform.statusItems.menuNeedsUpdate(menu);
    return *std::find_if(menu.begin(), menu.end(), [&](const MenuItem& each) { return each.title == title; });
  }
  /// Which items of a submenu are checked.
  Lines checked(const std::string& title) {
    Lines titles;
    for (const MenuItem& each : item(title).submenu) {
      if (each.checked.value_or(false)) titles.push_back(each.title);
    }
    return titles;
  }

  MenuItems menu;
};

TEST_F(StatusMenu, ShowsHowThingsAre) {
  controller.applicationDidFinishLaunching();
  EXPECT_EQ(item("Delete Wallpaper").submenu.at(0).title, "No Wallpapers");
  EXPECT_FALSE(item("Delete Wallpaper").submenu[0].action);
  platform.defaults.set("resolutionScale", 0.35);
  EXPECT_EQ(checked("Resolution"), Lines{"Low (35%)"});
  platform.defaults.set("resolutionScale", 0.3);
  EXPECT_EQ(checked("Resolution"), Lines{}) << "none of those on offer";
  platform.loginItem.now = LoginItemStatus::requiresApproval;
  EXPECT_EQ(item("Open at Login").checked, false);
}

TEST_F(StatusMenu, DoesWhatIsChosen) {
  platform.alerts.answer = 1;
  platform.addWallpaper("Alps");
  controller.applicationDidFinishLaunching();
  platform.statusItems.menuNeedsUpdate(menu);
  Lines titles;
  for (const MenuItem& each : menu) titles.push_back(each.kind == MenuItem::Kind::list ? "the list" : each.title);
  EXPECT_EQ(titles,
            (Lines{"Wallpapers", "the list", "", "Add Wallpaper…", "Delete Wallpaper", "Show Wallpapers Folder", "",
                   "Pause Animation", "Frame Rate", "Resolution", "Open at Login", "", "How to Use…", "Quit Tavelle"}));
  item("Add Wallpaper…").action();
  EXPECT_EQ(platform.openPanels.shown.size(), 1U);
  item("Delete Wallpaper").submenu.at(0).action();
  EXPECT_EQ(platform.alerts.shown.at(0).message, "Delete “Alps”?");
  item("Show Wallpapers Folder").action();
  EXPECT_EQ(platform.workspace.opened, std::vector<std::filesystem::path>{"/home/Pictures/Wallpapers"});
  item("Pause Animation").action();
  EXPECT_TRUE(controller.paused());
  item("Resume Animation").action();
  EXPECT_FALSE(controller.paused());
  EXPECT_EQ(checked("Frame Rate"), Lines{"60 FPS"});
  item("Frame Rate").submenu.at(2).action();
  EXPECT_EQ(checked("Frame Rate"), Lines{"40 FPS"});
  item("How to Use…").action();
  EXPECT_EQ(platform.log().back(), "tutorial.html is missing from the app bundle");
  EXPECT_TRUE(platform.guideWindows.made.empty());
}

TEST_F(StatusMenu, LetsTheCoverageRestWhileItIsOpen) {
  controller.applicationDidFinishLaunching();
  for (const bool isOpen : {true, false}) {
    platform.statusItems.isOpen = isOpen;
    const int before = platform.windowList.fetches;
    platform.mainLoop.turn(1000ms);
    EXPECT_EQ(platform.windowList.fetches == before, isOpen);
  }
}

}  // namespace
}  // namespace tavelle
