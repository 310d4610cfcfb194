#include <gtest/gtest.h>

#include <algorithm>

#include "fakes/fake_platform.h"
#include "model/controller.h"
#include "platform/status_item.h"

namespace tavelle {
namespace {

using Lines = std::vector<std::string>;

struct StatusMenu : testing::Test {
  const MenuItems& menu() {
    platform.statusItems.open();
    platform.statusItems.isOpen = false;
    return platform.statusItems.menu;
  }
  const MenuItem& item(const std::string& title) {
    return *std::find_if(menu().begin(), menu().end(), [&](const MenuItem& each) { return each.title == title; });
  }
  /// Which items of a submenu are checked.
  Lines checked(const std::string& title) {
    Lines titles;
    for (const MenuItem& each : item(title).submenu) {
      if (each.checked.value_or(false)) titles.push_back(each.title);
    }
    return titles;
  }

  FakePlatform platform;
  Controller controller{platform};
};

TEST_F(StatusMenu, ShowsHowThingsAre) {
  controller.applicationDidFinishLaunching();
  EXPECT_EQ(item("Delete Wallpaper").submenu.at(0).title, "No Wallpapers");
  EXPECT_FALSE(item("Delete Wallpaper").submenu[0].action);
  EXPECT_EQ(std::get<double>(*platform.defaults.value("NSStatusItem Preferred Position Item-0")), 365.0);
  platform.defaults.set("fps", std::int64_t{25});
  EXPECT_EQ(checked("Frame Rate"), Lines{}) << "none of those on offer";
  for (const auto& [stored, titles] :
       std::vector<std::pair<double, Lines>>{{0.35, {"Low (35%)"}}, {0.7505, {"High (75%)"}}, {0.3, {}}}) {
    platform.defaults.set("resolutionScale", stored);
    EXPECT_EQ(checked("Resolution"), titles) << stored;
  }
  platform.loginItem.now = LoginItemStatus::requiresApproval;
  EXPECT_EQ(item("Open at Login").checked, false);
}

TEST_F(StatusMenu, DoesWhatIsChosen) {
  platform.alerts.answer = 1;
  platform.addWallpaper("Alps");
  controller.applicationDidFinishLaunching();
  Lines titles;
  for (const MenuItem& each : menu()) titles.push_back(each.kind == MenuItem::Kind::list ? "the list" : each.title);
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
  platform.statusItems.open();
  const int before = platform.windowList.fetches;
  platform.mainLoop.turn(3000ms);
  EXPECT_EQ(platform.windowList.fetches, before);
  platform.statusItems.isOpen = false;
  platform.mainLoop.turn(1000ms);
  EXPECT_GT(platform.windowList.fetches, before);
}

}  // namespace
}  // namespace tavelle
