#include "app/command_line.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tavelle {
namespace {

TEST(CommandLine, ChoosesTheModeByTheWholeFirstArgumentAndItsCount) {
  using Arguments = std::vector<std::string>;
  for (const auto& [arguments, mode] :
       std::vector<std::pair<Arguments, std::optional<Mode>>>{{{}, std::nullopt},
                                                              {{"--set-still"}, std::nullopt},
                                                              {{"--coverage"}, Mode::coverage},
                                                              {{"--delete-wallpaper", "a"}, Mode::deleteWallpaper},
                                                              {{"--sync-spaces", "a.jpg"}, Mode::syncSpaces},
                                                              {{"--preview-menu", "out"}, Mode::previewMenu},
                                                              {{"--Set-Still", "a.jpg"}, std::nullopt},
                                                              {{"--set-still=a.jpg", "b.jpg"}, std::nullopt},
                                                              {{"a.jpg", "--set-still"}, std::nullopt},
                                                              {{"--set-still", "a.jpg"}, Mode::setStill},
                                                              {{"--set-still", "a.jpg", "ignored"}, Mode::setStill}}) {
    EXPECT_EQ(commandLineMode(arguments), mode) << testing::PrintToString(arguments);
  }
}

}  // namespace
}  // namespace tavelle
