#include <gtest/gtest.h>

#include "app/controller.h"
#include "fakes/fake_platform.h"

namespace tavelle {
namespace {

TEST(StillFrame, IsWrittenOrLoggedAsMissing) {
  FakePlatform platform;
  Controller controller(platform);
  const std::filesystem::path folder = controller.library() / "Sea";
  platform.files.put(folder / "still.jpg", "an earlier one");

  controller.makeStill("/films/sea.mov", folder / "still.jpg");
  EXPECT_EQ(platform.files.content(folder / "still.jpg"), "/films/sea.mov at 0.5");

  platform.files.broken = {folder / "still.jpg"};
  controller.makeStill("/films/lake.mov", folder / "still.jpg");
  EXPECT_EQ(platform.files.content(folder / "still.jpg"), "/films/sea.mov at 0.5");
  EXPECT_TRUE(platform.log().empty()) << "an unwritten still is no news";

  platform.videoFrames.undecodable = "/films/a\xFF b.mov";
  controller.makeStill("/films/a\xFF b.mov", folder / "other.jpg");
  EXPECT_EQ(platform.log(), std::vector<std::string>{"no still frame for a\\xFF b.mov"});
  EXPECT_FALSE(platform.files.exists(folder / "other.jpg"));
}

}  // namespace
}  // namespace tavelle
