#include <gtest/gtest.h>

#include "fakes/program_test.h"

namespace tavelle {
namespace {

struct Seeding : ProgramTest {
  void addSample(const std::string& name) { platform.files.put("/share/Wallpapers/" + name + "/index.html", name); }
  Lines seeded() const { return platform.defaults.stringArray("seededWallpapers"); }
};

TEST_F(Seeding, CopiesEachSampleOnceEver) {
  controller.seedLibraryIfEmpty();
  EXPECT_TRUE(platform.files.exists(controller.library())) << "also without samples";
  platform.files.put(controller.library() / "Beach/index.html", "mine");
  for (const char* name : {"dunes", "Aurora", "Beach"}) addSample(name);
  platform.files.full = {controller.library() / "Aurora"};
  controller.seedLibraryIfEmpty();
  EXPECT_EQ(seeded(), (Lines{"Beach", "dunes"}));
  platform.files.full.clear();
  controller.seedLibraryIfEmpty();
  EXPECT_EQ(seeded(), (Lines{"Aurora", "Beach", "dunes"}));
  EXPECT_EQ(platform.files.content(controller.library() / "Beach/index.html"), "mine");
  EXPECT_EQ(platform.files.content(controller.library() / "dunes/index.html"), "dunes");

  platform.files.remove(controller.library() / "Aurora");
  addSample("Canyon");
  controller.seedLibraryIfEmpty();
  EXPECT_FALSE(platform.files.exists(controller.library() / "Aurora"));
  platform.files.remove("/share/Wallpapers");
  controller.seedLibraryIfEmpty();
  EXPECT_EQ(seeded(), (Lines{"Aurora", "Beach", "Canyon", "dunes"}));
  EXPECT_EQ(platform.log(), (Lines{"couldn't add Aurora: disk full", "added the bundled dunes wallpaper",
                                   "added the bundled Aurora wallpaper", "added the bundled Canyon wallpaper"}));
}

}  // namespace
}  // namespace tavelle
