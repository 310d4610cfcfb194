#include "desktop_picture/wallpaper_agent.h"

#include <gtest/gtest.h>

#include <future>

#include "desktop_picture/agent_keeper.h"
#include "desktop_picture/store_entries.h"
#include "desktop_picture/store_values.h"
#include "desktop_picture/wallpaper_store.h"
#include "fakes/fake_platform.h"
#include "fakes/temporary_folder.h"
#include "platform/linux/linux_files.h"
#include "platform/spaces.h"

namespace tavelle {
namespace {

using namespace std::chrono_literals;

constexpr auto storePath = "/home/Library/Application Support/com.apple.wallpaper/Store/Index.plist";

struct FakeSpaces final : Spaces {
  std::vector<std::string> list() const override { return ids; }
  Registration onChange(std::function<void()> tell) override { return listen(changed, std::move(tell)); }
  std::vector<std::string> ids{"0", "1"};
  std::function<void()> changed;
};

struct Agent : testing::Test {
  /// As after a start of the machine, or an end of the agent before.
  void restart() {
    agent.reset();
    agent.emplace(AgentServices{platform.clock, pictures, platform.files, platform.mainLoop, platform.screens, spaces,
                                platform.defaults, storePath});
    agent->start();
  }
  bool sync(const std::string& still) {
    platform.clock.time += std::chrono::seconds(1);
    return syncAllSpaces(still, {platform.clock, platform.files, platform.processes, storePath},
                         [](const std::string&) {});
  }
  PlistPtr store() { return parsedDictionary(platform.files.content(storePath).value_or("")); }
  std::string imageOf(const std::string& display) {
    return imageOfDisplay(store().get(), display).value_or(ShownImage{"nothing"}).address;
  }
  std::string shown(const std::string& screen) { return pictures.pictures[screen].native(); }

  FakePlatform platform;
  FakeDesktopPicture& pictures = platform.desktopPicture;
  FakeSpaces spaces;
  std::optional<WallpaperAgent> agent;
};

TEST_F(Agent, MakesAStoreThatASyncThenFills) {
  restart();
  EXPECT_TRUE(pictures.pictures.empty()) << "there is nothing to show yet";
  const auto made = store();
  ASSERT_TRUE(made);
  const std::string entry = onOneLine(plistItem(made.get(), "AllSpacesAndDisplays", PLIST_DICT));
  const std::string displays =
      "<key>Displays</key><dict><key>left</key>" + entry + "<key>right</key>" + entry + "</dict>";
  const std::string space = "<dict><key>Default</key>" + entry + displays + "</dict>";
  EXPECT_EQ(onOneLine(made.get()), "<dict><key>AllSpacesAndDisplays</key>" + entry + displays +
                                       "<key>Spaces</key><dict><key>0</key>" + space + "<key>1</key>" + space +
                                       "</dict></dict>");
  EXPECT_TRUE(sync("/a.jpg"));
  EXPECT_FALSE(sync("/a.jpg")) << "every entry has been there";
  const auto before = platform.files.content(storePath);
  restart();
  EXPECT_EQ(platform.files.content(storePath), before) << "there is nothing to add";
  EXPECT_EQ(shown("left"), "/a.jpg");
  EXPECT_EQ(shown("right"), "/a.jpg");
}

TEST_F(Agent, LeavesWhatTheUserHasChosenSince) {
  restart();
  sync("/a%20b é.jpg");
  restart();
  EXPECT_EQ(shown("left"), "/a%20b é.jpg");
  pictures.pictures["left"] = "/user.jpg";
  restart();
  spaces.changed();
  platform.mainLoop.turn(1000ms);
  EXPECT_EQ(shown("left"), "/user.jpg");
  sync("/b.jpg");
  restart();
  EXPECT_EQ(shown("left"), "/b.jpg") << "a newer wish than the user's choice";
  platform.clock.time -= std::chrono::hours(1);
  sync("/c.jpg");
  restart();
  EXPECT_EQ(shown("left"), "/c.jpg") << "a wish since the clock was put back";
}

TEST_F(Agent, FollowsScreensAndSpaces) {
  restart();
  sync("/a.jpg");
  restart();
  pictures.pictures.erase("right");  // as after its place has changed
  platform.screens.screens.push_back({"third", {}, {}, {}});
  spaces.ids.push_back("2");
  platform.screens.changed();
  spaces.changed();
  EXPECT_EQ(shown("third"), "") << "not in the middle of a change";
  platform.mainLoop.turn(600ms);
  EXPECT_EQ(shown("right"), "/a.jpg");
  EXPECT_EQ(shown("third"), "/a.jpg");
  EXPECT_FALSE(sync("/a.jpg")) << "the new entries show it, too";
  EXPECT_TRUE(plistItem(plistItem(store().get(), "Spaces", PLIST_DICT), "2", PLIST_DICT));
}

TEST_F(Agent, NotesWhatOthersSet) {
  restart();
  sync("/a.jpg");
  restart();
  platform.clock.time += std::chrono::seconds(1);
  pictures.pictures["left"] = "/b.jpg";
  agent->pictureWasSet("file:///b.jpg", "left");
  EXPECT_EQ(imageOf("left"), "file:///b.jpg");
  EXPECT_EQ(imageOf("right"), "file:///a.jpg");
  pictures.pictures["left"] = "/user.jpg";
  restart();
  EXPECT_EQ(shown("left"), "/user.jpg") << "the set was done, and needs no repeating";
  EXPECT_TRUE(sync("/b.jpg"));
  restart();
  platform.files.full = {storePath};
  pictures.pictures["left"] = "/c.jpg";
  agent->pictureWasSet("file:///c.jpg", "left");
  restart();
  EXPECT_EQ(shown("left"), "/c.jpg") << "though the store could not note it";
}

TEST_F(Agent, LeavesAStoreAloneThatItCannotRead) {
  // Once copied to the displays, it could not be read any more.
  const auto deep = storeWith("AllSpacesAndDisplays/a", repeated("<array>", 508) + repeated("</array>", 508));
  for (const std::string odd :
       {"damaged", "<plist><dict><key>AllSpacesAndDisplays</key><integer>1</integer></dict></plist>",
        "<plist><dict><key>Displays</key><string>x</string><key>Spaces</key><array/></dict></plist>", deep.c_str()}) {
    platform.files.put(storePath, odd);
    restart();
    agent->pictureWasSet("file:///b.jpg", "left");
    EXPECT_TRUE(store() || platform.files.content(storePath) == odd) << odd;
  }
}

TEST_F(Agent, AndASyncAtTheSameTimeLoseNothingOfEachOther) {
  const TemporaryFolder folder;
  const auto file = folder.path() / "Index.plist";
  LinuxFiles files;
  WallpaperAgent noting(
      {platform.clock, pictures, files, platform.mainLoop, platform.screens, spaces, platform.defaults, file});
  noting.start();
  const auto sync = [&](const std::string& still) {
    return syncAllSpaces(still, {platform.clock, files, platform.processes, file}, [](const std::string&) {});
  };
  for (int i = 0; i < 20; ++i) {
    const std::string name = std::to_string(i);
    auto synced = std::async(std::launch::async, [&] { return sync("/" + name); });
    noting.pictureWasSet("file:///noted.jpg", name);
    EXPECT_TRUE(synced.get());
    const auto root = parsedDictionary(contentOf(file));
    EXPECT_TRUE(plistItem(plistItem(root.get(), "Displays", PLIST_DICT), name.c_str(), PLIST_DICT)) << name;
    EXPECT_EQ(imageOfDisplay(root.get(), "without an entry").value_or(ShownImage{}).address, "file:///" + name);
  }
  const auto held = files.lock(folder.path());
  EXPECT_TRUE(sync("/last.jpg")) << "though somebody who hangs holds the lock";
}

TEST(AgentKeeper, StartsTheAgentAgainLaterAndLater) {
  FakePlatform platform;
  FakeProcesses& processes = platform.processes;
  std::optional<AgentKeeper> keeper(std::in_place, processes, platform.mainLoop, "/lib/WallpaperAgent");
  keeper->start();
  const auto pauseAfterEnd = [&](Ending ending = Ending::unasked) {
    auto pause = 0ms;
    processes.endChild(ending);
    platform.mainLoop.turn(0ms);
    for (; !processes.isRunning() && pause < 100s; pause += 250ms) platform.mainLoop.turn(250ms);
    return pause;
  };
  auto before = 0ms;
  for (int i = 0; i < 12; ++i) {
    const auto pause = pauseAfterEnd();
    EXPECT_TRUE(pause > before || pause == 60s) << pause.count() << " after " << before.count();
    before = pause;
  }
  EXPECT_EQ(before, 60s) << "not for good";
  platform.mainLoop.turn(31s);
  EXPECT_EQ(pauseAfterEnd(), 250ms) << "at once after a good while";
  for (int i = 0; i < 12; ++i) {
    platform.mainLoop.turn(600ms);
    EXPECT_EQ(pauseAfterEnd(Ending::asked), 0ms) << "a restart that was asked for is no fault";
  }
  EXPECT_GT(pauseAfterEnd(Ending::asked), 0ms) << "nobody asks so early";
  processes.missing = true;
  EXPECT_GE(pauseAfterEnd(), 100s);
  processes.missing = false;
  platform.mainLoop.turn(61s);
  EXPECT_TRUE(processes.isRunning()) << "an executable that is back is started";
  keeper.reset();
  EXPECT_FALSE(processes.isRunning()) << "the agent ends with its keeper";
}

}  // namespace
}  // namespace tavelle
