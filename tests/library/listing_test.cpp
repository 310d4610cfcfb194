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
  Names thirty(30, "old");
  thirty[28] = "last but one";
  const auto next = withMostRecent(thirty, "new", platform.textOrder);
  EXPECT_EQ(next.size(), 30U);
  EXPECT_EQ(next.back(), "last but one");
}

TEST(Listing, OffersTheCurrentTheRecentThenTheNewest) {
  // The library, the oldest first; the current one; the recent ones; those on offer.
  using Case = std::tuple<Names, std::string, Names, Names>;
  for (const auto& [library, current, recents, quick] :
       std::initializer_list<Case>{{{"A", "D", "C", "B"}, "C", {"C", "Gone", "B"}, {"C", "B", "D"}},
                                   {{"D", "B", "C", "A"}, "", {}, {"A", "C", "B"}},
                                   {{"A", "B", "C", "D"}, "D", {"C", "B", "A"}, {"D", "C", "B"}},
                                   {{"A", "B"}, "", {"A"}, {"A", "B"}},
                                   {{"A", "B"}, "Gone", {}, {"B", "A"}},
                                   {{}, "Gone", {"A"}, {}}}) {
    FakePlatform platform;
    for (const auto& name : library) platform.addWallpaper(name);
    Controller controller(platform);
    const Wallpaper shown{{controller.library() / current}};
    EXPECT_EQ(namesOf(quickList(controller.wallpapers(), shown, recents, platform.files, platform.textOrder)), quick);
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
