#include <gtest/gtest.h>

#include "fakes/fake_platform.h"
#include "model/controller.h"

namespace tavelle {
namespace {

TEST(Launch, ChoosesTheStoredWallpaperThenTheBundledThenTheFirst) {
  using Case = std::tuple<const char*, Lines, const char*, std::string>;
  for (const auto& [what, library, stored, shown] : std::initializer_list<Case>{
           {"stored", {"Aurora", "Starship Liftoff", "Waves"}, "Waves", "Waves"},
           {"stored one is gone", {"Aurora", "Starship Liftoff"}, "Waves", "Starship Liftoff"},
           {"nothing stored", {"Aurora", "Starship Liftoff"}, nullptr, "Starship Liftoff"},
           {"no bundled one either", {"Waves", "Aurora"}, "Gone", "Aurora"},
           {"letter case counts", {"Aurora", "waves"}, "Waves", "Aurora"},
           {"composed and decomposed letters are the same", {"Aurora", "Caf\u00E9"}, "Cafe\u0301", "Caf\u00E9"},
           {"empty library", {}, "Waves", "nothing"}}) {
    FakePlatform platform;
    for (const auto& name : library) platform.addWallpaper(name);
    if (stored) platform.defaults.set("wallpaper", std::string(stored));
    Controller controller(platform);
    controller.applicationDidFinishLaunching();
    EXPECT_EQ(platform.log(), (Lines{"launched, showing: " + shown, "showing on 2 display(s)"})) << what;
    EXPECT_EQ(controller.current() ? controller.current()->name() : "nothing", shown) << what;
    const auto recents = platform.defaults.stringArray("recentWallpapers");
    EXPECT_EQ(recents, shown == "nothing" ? Lines{} : Lines{shown}) << what;
    // The launch restores; it chooses nothing anew.
    EXPECT_EQ(platform.defaults.string("wallpaper"), stored ? std::optional<std::string>(stored) : std::nullopt);
    EXPECT_TRUE(platform.desktopPicture.pictures.empty()) << what;
  }
}

}  // namespace
}  // namespace tavelle
