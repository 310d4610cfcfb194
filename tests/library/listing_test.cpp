#include "library/listing.h"

#include <gtest/gtest.h>

#include "fakes/fake_platform.h"
#include "model/controller.h"

namespace tavelle {
namespace {

using Names = std::vector<std::string>;

Names namesOf(const std::vector<Wallpaper>& wallpapers) {
  Names names;
  for (const auto& each : wallpapers) names.push_back(each.name());
  return names;
}

TEST(Listing, HoldsTheFoldersWithAPageInFileBrowserOrder) {
  FakePlatform platform;
  Controller controller(platform);
  EXPECT_EQ(namesOf(controller.wallpapers()), Names{}) << "no library yet";
  for (const char* name : {"Clip 10", "clip 2", "Clip 1", "éclair", "Eclipse", "zebra", ".Old", "Page/index.html"}) {
    platform.addWallpaper(name);
  }
  platform.files.put("/home/Pictures/Wallpapers/notes.txt");
  platform.files.put("/home/Pictures/Wallpapers/Unfinished/video.mp4");
  EXPECT_EQ(namesOf(controller.wallpapers()),
            (Names{"Clip 1", "clip 2", "Clip 10", "éclair", "Eclipse", "Page", "zebra"}));
}

TEST(Listing, RemembersThirtyNamesOnceEach) {
  FakePlatform platform;
  EXPECT_EQ(withMostRecent({"Dunes", "Waves", "Rain"}, "Waves", platform.textOrder), (Names{"Waves", "Dunes", "Rain"}));
  EXPECT_EQ(withMostRecent({"Cafe\u0301"}, "Caf\u00E9", platform.textOrder), Names{"Caf\u00E9"});
  Names thirty;
  for (int i = 0; i < 30; ++i) thirty.push_back(std::to_string(i));
  const auto next = withMostRecent(thirty, "new", platform.textOrder);
  EXPECT_EQ(next.size(), 30U);
  EXPECT_EQ(next.front(), "new");
  EXPECT_EQ(next.back(), "28");
}

TEST(Listing, OffersTheCurrentTheRecentThenTheNewest) {
  struct Case {
    const char* what;
    Names library;  // oldest first
    std::string current;
    Names recents;
    Names quick;
  };
  const Case cases[]{
      {"all kinds", {"A", "D", "C", "B"}, "C", {"C", "Gone", "B"}, {"C", "B", "D"}},
      {"the newest", {"D", "B", "C", "A"}, "", {}, {"A", "C", "B"}},
      {"many recents", {"A", "B", "C", "D"}, "D", {"C", "B", "A"}, {"D", "C", "B"}},
      {"fewer than three", {"A", "B"}, "", {"A"}, {"A", "B"}},
      {"current one is gone", {"A", "B"}, "Gone", {}, {"B", "A"}},
      {"nothing", {}, "Gone", {"A"}, {}},
  };
  for (const auto& [what, library, current, recents, quick] : cases) {
    FakePlatform platform;
    for (const auto& name : library) platform.addWallpaper(name);
    Controller controller(platform);
    platform.defaults.set("recentWallpapers", recents);
    const auto all = controller.wallpapers();
    const std::optional<Wallpaper> shown =
        current.empty() ? std::nullopt : std::optional(Wallpaper{{controller.library() / current}});
    EXPECT_EQ(namesOf(quickList(all, shown, recents, platform.files, platform.textOrder)), quick) << what;
  }
}

TEST(Listing, TakesUndatedWallpapersForTheOldestInNameOrder) {
  FakePlatform platform;
  platform.addWallpaper("Dated");
  // Of two that are not there nobody can tell when they were made.
  const std::vector<Wallpaper> all{{{"/A"}}, {{"/home/Pictures/Wallpapers/Dated"}}, {{"/B"}}};
  EXPECT_EQ(namesOf(quickList(all, {}, {}, platform.files, platform.textOrder)), (Names{"Dated", "A", "B"}));
}

}  // namespace
}  // namespace tavelle
