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

TEST(CommandLine, SetsTheStillOnEveryScreenAndReportsThoseThatRefuse) {
  struct Case {
    std::string refusing;
    std::size_t screens;
    int status;
    std::string out;
    std::string err;
  };
  for (const auto& [refusing, count, status, expectedOut, expectedErr] :
       std::vector<Case>{{"none", 2, 0, "desktop picture set\n", ""},
                         {"left", 2, 1, "desktop picture failed\n", "failed: no\n"},
                         {"none", 0, 0, "desktop picture set\n", ""}}) {
    FakePlatform platform;
    platform.screens.screens.resize(count);
    platform.desktopPicture.refusing = refusing;
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(setStill("a.jpg", platform.screens, platform.desktopPicture, out, err), status);
    EXPECT_EQ(out.str(), expectedOut);
    EXPECT_EQ(err.str(), expectedErr);
    EXPECT_EQ(platform.desktopPicture.pictures.size(), count - (status == 1 ? 1 : 0)) << "a refusal stops no other";
  }
}

}  // namespace
}  // namespace tavelle
