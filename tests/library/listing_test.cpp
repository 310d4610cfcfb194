#include "library/listing.h"

#include <gtest/gtest.h>

#include "fakes/program_test.h"

namespace tavelle {
namespace {

Lines namesOf(const std::vector<Wallpaper>& wallpapers) {
  Lines names;
  for (const auto& each : wallpapers) names.push_back(each.name());
  return names;
}

using Listing = ProgramTest;

TEST_F(Listing, HoldsTheFoldersWithAPageInFileBrowserOrder) {
  EXPECT_EQ(namesOf(controller.wallpapers()), Lines{}) << "no library yet";
  for (const char* name : {"Clip 10", "clip 2", "Clip 1", "éclair", "Eclipse", "zebra", ".Old", "Page/index.html"}) {
    platform.addWallpaper(name);
  }
  platform.files.put("/home/Pictures/Wallpapers/notes.txt");
  platform.files.put("/home/Pictures/Wallpapers/Unfinished/video.mp4");
  EXPECT_EQ(namesOf(controller.wallpapers()),
            (Lines{"Clip 1", "clip 2", "Clip 10", "éclair", "Eclipse", "Page", "zebra"}));
}

TEST_F(Listing, RemembersThirtyNamesOnceEach) {
  EXPECT_EQ(withMostRecent({"Dunes", "Waves", "Rain"}, "Waves", platform.textOrder), (Lines{"Waves", "Dunes", "Rain"}));
  EXPECT_EQ(withMostRecent({"Cafe\u0301"}, "Caf\u00E9", platform.textOrder), Lines{"Caf\u00E9"});
  Lines thirty(30, "old");
  thirty[28] = "last but one";
  const auto next = withMostRecent(thirty, "new", platform.textOrder);
  EXPECT_EQ(next.size(), 30U);
  EXPECT_EQ(next.back(), "last but one");
}

TEST(QuickList, OffersTheCurrentTheRecentThenTheNewest) {
  // The library, the oldest first; the current one; the recent ones; those on offer.
  using Case = std::tuple<Lines, std::string, Lines, Lines>;
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

TEST_F(Listing, TakesUndatedWallpapersForTheOldestInNameOrder) {
  platform.addWallpaper("Dated");
  // Of two that are not there nobody can tell when they were made.
  const std::vector<Wallpaper> all{{{"/A"}}, {{"/home/Pictures/Wallpapers/Dated"}}, {{"/B"}}};
  EXPECT_EQ(namesOf(quickList(all, {}, {}, platform.files, platform.textOrder)), (Lines{"Dated", "A", "B"}));
}

}  // namespace
}  // namespace tavelle
