#include <gtest/gtest.h>

#include "fakes/fake_platform.h"
#include "model/controller.h"

namespace tavelle {
namespace {

using Names = std::vector<std::string>;

struct Seeding : testing::Test {
  void addSample(const std::string& name) { platform.files.put("/share/Wallpapers/" + name + "/index.html", name); }
  Names seeded() const { return platform.defaults.stringArray("seededWallpapers"); }

  FakePlatform platform;
  Controller controller{platform};
};

TEST_F(Seeding, CopiesEachSampleOnceEver) {
  addSample("beach");
  addSample("Aurora");
  controller.seedLibraryIfEmpty();
  EXPECT_EQ(platform.log(), (Names{"added the bundled Aurora wallpaper", "added the bundled beach wallpaper"}));
  EXPECT_EQ(seeded(), (Names{"Aurora", "beach"}));
  EXPECT_EQ(platform.files.content(controller.library() / "beach/index.html"), "beach");

  platform.files.remove(controller.library() / "Aurora");
  addSample("Canyon");
  controller.seedLibraryIfEmpty();
  EXPECT_EQ(platform.log().back(), "added the bundled Canyon wallpaper");
  EXPECT_EQ(platform.log().size(), 3U);
  EXPECT_FALSE(platform.files.exists(controller.library() / "Aurora"));
}

TEST_F(Seeding, LeavesTheUsersOwnFolderAlone) {
  platform.files.put(controller.library() / "Beach/index.html", "mine");
  addSample("Beach");
  controller.seedLibraryIfEmpty();
  EXPECT_EQ(platform.files.content(controller.library() / "Beach/index.html"), "mine");
  EXPECT_EQ(seeded(), Names{"Beach"});
  EXPECT_TRUE(platform.log().empty());
}

TEST_F(Seeding, TriesAFailedCopyAgain) {
  addSample("Aurora");
  addSample("Beach");
  platform.files.full = {controller.library() / "Aurora"};
  controller.seedLibraryIfEmpty();
  EXPECT_EQ(platform.log(), (Names{"couldn't add Aurora: disk full", "added the bundled Beach wallpaper"}));
  EXPECT_EQ(seeded(), Names{"Beach"});
  platform.files.full.clear();
  controller.seedLibraryIfEmpty();
  EXPECT_EQ(seeded(), (Names{"Aurora", "Beach"}));
}

TEST_F(Seeding, WithoutSamplesKeepsWhatItKnows) {
  platform.defaults.set("seededWallpapers", Names{"Aurora"});
  controller.seedLibraryIfEmpty();
  EXPECT_EQ(seeded(), Names{"Aurora"});
  EXPECT_TRUE(platform.files.exists(controller.library()));
}

}  // namespace
}  // namespace tavelle
