#include <gtest/gtest.h>

#include <algorithm>

#include "fakes/fake_platform.h"
#include "menu/wallpaper_list_view.h"
#include "model/controller.h"
#include "platform/status_item.h"

namespace tavelle {
namespace {

using Lines = std::vector<std::string>;

/// A line for each item: "-" a separator, "(title)" one that can't be chosen, "x title" and "o title" one with a check
/// mark or with room for it; submenus indented.
Lines described(const MenuItems& items, const std::string& indent = "") {
  Lines lines;
  for (const MenuItem& item : items) {
    if (item.kind == MenuItem::Kind::list) {
      lines.push_back(indent + "[list of " + std::to_string(item.list->rows().size()) + " rows]");
      continue;
    }
    const std::string mark = item.checked ? *item.checked ? "x " : "o " : "";
    const bool idle = !item.action && item.submenu.empty();
    lines.push_back(indent + (item.kind == MenuItem::Kind::separator ? "-"
                              : idle                                 ? "(" + item.title + ")"
                                                                     : mark + item.title));
    for (auto& line : described(item.submenu, indent + "  ")) lines.push_back(std::move(line));
  }
  return lines;
}

struct StatusMenu : testing::Test {
  const MenuItems& menu() {
    platform.statusItems.open();
    platform.statusItems.isOpen = false;
    return platform.statusItems.menu;
  }
  const MenuItem& item(const MenuItems& items, const std::string& title) {
    return *std::find_if(items.begin(), items.end(), [&](const MenuItem& each) { return each.title == title; });
  }
  void choose(const std::string& title) { item(menu(), title).action(); }
  void choose(const std::string& title, const std::string& below) { item(item(menu(), title).submenu, below).action(); }
  /// Which items of a submenu are checked.
  Lines checked(const std::string& title) {
    Lines titles;
    for (const MenuItem& each : item(menu(), title).submenu) {
      if (each.checked.value_or(false)) titles.push_back(each.title);
    }
    return titles;
  }

  FakePlatform platform;
  Controller controller{platform};
};

TEST_F(StatusMenu, HoldsEverythingInItsOrder) {
  for (const char* name : {"Dunes", "Waves 10", "Waves 9", "Alps"}) platform.addWallpaper(name);
  controller.applicationDidFinishLaunching();
  EXPECT_EQ(described(menu()), (Lines{"(Wallpapers)",
                                      "[list of 4 rows]",
                                      "-",
                                      "Add Wallpaper…",
                                      "Delete Wallpaper",
                                      "  Alps",
                                      "  Dunes",
                                      "  Waves 9",
                                      "  Waves 10",
                                      "Show Wallpapers Folder",
                                      "-",
                                      "Pause Animation",
                                      "Frame Rate",
                                      "  x 60 FPS",
                                      "  o 50 FPS",
                                      "  o 40 FPS",
                                      "  o 30 FPS",
                                      "  o 20 FPS",
                                      "  -",
                                      "  (Lower uses less battery)",
                                      "Resolution",
                                      "  x Full",
                                      "  o High (75%)",
                                      "  o Medium (50%)",
                                      "  o Low (35%)",
                                      "  -",
                                      "  (Lower is softer and uses less battery)",
                                      "o Open at Login",
                                      "-",
                                      "How to Use…",
                                      "Quit Tavelle"}));
}

TEST_F(StatusMenu, ShowsHowThingsAre) {
  controller.applicationDidFinishLaunching();
  EXPECT_EQ(described(item(menu(), "Delete Wallpaper").submenu), Lines{"(No Wallpapers)"});
  EXPECT_EQ(std::get<double>(*platform.defaults.value("NSStatusItem Preferred Position Item-0")), 365.0);
  platform.defaults.set("fps", std::int64_t{25});
  EXPECT_EQ(checked("Frame Rate"), Lines{}) << "none of those on offer";
  for (const auto& [stored, titles] :
       std::vector<std::pair<double, Lines>>{{0.35, {"Low (35%)"}}, {0.7505, {"High (75%)"}}, {0.3, {}}}) {
    platform.defaults.set("resolutionScale", stored);
    EXPECT_EQ(checked("Resolution"), titles) << stored;
  }
  platform.loginItem.now = LoginItemStatus::requiresApproval;
  EXPECT_EQ(item(menu(), "Open at Login").checked, false);
}

TEST_F(StatusMenu, DoesWhatIsChosen) {
  for (const char* name : {"Alps", "Dunes"}) platform.addWallpaper(name);
  controller.applicationDidFinishLaunching();
  choose("Add Wallpaper…");
  EXPECT_EQ(platform.openPanels.shown.size(), 1U);
  choose("Show Wallpapers Folder");
  EXPECT_EQ(platform.workspace.opened, std::vector<std::filesystem::path>{"/home/Pictures/Wallpapers"});
  controller.togglePause();
  choose("Resume Animation");
  EXPECT_FALSE(controller.paused());
  choose("Frame Rate", "40 FPS");
  EXPECT_EQ(checked("Frame Rate"), Lines{"40 FPS"});
  choose("How to Use…");
  EXPECT_EQ(platform.log().back(), "tutorial.html is missing from the app bundle");

  // A choice in the list is carried out once the menu is gone.
  platform.addWallpaper("Waves");
  menu()[1].list->rows()[1]->accessibilityPerformPress();
  EXPECT_EQ(controller.current()->name(), "Alps");
  platform.mainLoop.turn(0);
  EXPECT_EQ(controller.current()->name(), "Waves");
}

TEST_F(StatusMenu, LetsTheCoverageRestWhileItIsOpen) {
  controller.applicationDidFinishLaunching();
  platform.statusItems.open();
  const int before = platform.windowList.fetches;
  platform.mainLoop.turn(3);
  EXPECT_EQ(platform.windowList.fetches, before);
  platform.statusItems.isOpen = false;
  platform.mainLoop.turn(1);
  EXPECT_GT(platform.windowList.fetches, before);
}

}  // namespace
}  // namespace tavelle
