#include "app/command_line.h"

#include <gtest/gtest.h>

#include <sstream>

#include "fakes/fake_platform.h"

namespace tavelle {
namespace {

TEST(CommandLine, ChoosesTheModeByTheWholeFirstArgumentAndItsCount) {
  using Arguments = std::vector<std::string>;
  for (const auto& [arguments, mode] :
       std::vector<std::pair<Arguments, std::optional<Mode>>>{{{}, std::nullopt},
                                                              {{"--set-still"}, std::nullopt},
                                                              {{"--coverage"}, Mode::coverage},
                                                              {{"--delete-wallpaper"}, std::nullopt},
                                                              {{"--delete-wallpaper", "a"}, Mode::deleteWallpaper},
                                                              {{"--sync-spaces"}, std::nullopt},
                                                              {{"--sync-spaces", "a.jpg"}, Mode::syncSpaces},
                                                              {{"--coverage", "--set-still", "a.jpg"}, Mode::coverage},
                                                              {{"--preview-menu"}, std::nullopt},
                                                              {{"--preview-menu", "out"}, Mode::previewMenu},
                                                              {{"--Set-Still", "a.jpg"}, std::nullopt},
                                                              {{"--set-still=a.jpg", "b.jpg"}, std::nullopt},
                                                              {{"a.jpg", "--set-still"}, std::nullopt},
                                                              {{"--set-still", "a.jpg"}, Mode::setStill},
                                                              {{"--set-still", "a.jpg", "ignored"}, Mode::setStill}}) {
    EXPECT_EQ(commandLineMode(arguments), mode) << testing::PrintToString(arguments);
  }
}

TEST(CommandLine, ReportsAScreenThatRefusesTheStillAndTriesTheOthers) {
  FakePlatform platform;
  platform.desktopPicture.refusing = "left";
  std::ostringstream out;
  std::ostringstream err;
  EXPECT_EQ(setStill("a.jpg", platform.screens, platform.desktopPicture, out, err), 1);
  EXPECT_EQ(out.str(), "desktop picture failed\n");
  EXPECT_EQ(err.str(), "failed: no\n");
  EXPECT_EQ(platform.desktopPicture.pictures.count("right"), 1U);
}

}  // namespace
}  // namespace tavelle
