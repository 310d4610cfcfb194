#include "model/wallpaper.h"

#include <gtest/gtest.h>

#include "fakes/fake_platform.h"

namespace tavelle {
namespace {

TEST(Wallpaper, FindsItsStill) {
  using Names = std::vector<std::string>;
  for (const auto& [names, still] :
       std::vector<std::pair<Names, std::string>>{{{"image.png", "still.jpg"}, "still.jpg"},
                                                  {{"cover.png", "b.heic"}, "b.heic"},
                                                  {{"still.jpg", "STILL.jpeg"}, "STILL.jpeg"},
                                                  {{"a.jpg", "B.PNG"}, "B.PNG"},
                                                  {{".hidden.jpg", "x.jpg"}, ".hidden.jpg"},
                                                  {{"image.gif", "still", "video.mp4", "jpg"}, ""}}) {
    FakePlatform platform;
    platform.addWallpaper("Own");
    const std::filesystem::path folder = "/home/Pictures/Wallpapers/Own";
    platform.files.put(folder / "below/still.jpg");
    for (const auto& name : names) platform.files.put(folder / name);
    const auto found = Wallpaper{{folder}}.still(platform.files, platform.textOrder);
    EXPECT_EQ(found ? found->filename().string() : "", still) << testing::PrintToString(names);
    EXPECT_EQ(Wallpaper{{"/gone"}}.still(platform.files, platform.textOrder), std::nullopt);
  }
}

TEST(Wallpaper, IsNamedByItsFolder) {
  for (const auto& [path, name] :
       {std::pair{"/w/Ocean.night", "Ocean.night"}, {"/w/Waves/", "Waves"}, {"/w/caf\xE9", "caf\\xE9"}}) {
    EXPECT_EQ((Wallpaper{{path}}.name()), name);
  }
}

TEST(Wallpaper, IsTheSameByItsStandardizedFolder) {
  const Wallpaper waves{{"/w/Waves"}};
  for (const auto& [path, same] :
       {std::pair{"/w/./Waves", true}, {"//w/x/../Waves/", true}, {"/w/waves", false}, {"/w", false}}) {
    EXPECT_EQ(waves.same(Wallpaper{{path}}), same) << path;
  }
  EXPECT_FALSE(waves.same(std::nullopt));
}

}  // namespace
}  // namespace tavelle
