#include "desktop_picture/wallpaper_store.h"

#include <gtest/gtest.h>

#include "desktop_picture/store_values.h"
#include "fakes/fake_desktop.h"
#include "fakes/fake_files.h"

namespace tavelle {
namespace {

using Lines = std::vector<std::string>;
using namespace std::chrono_literals;
using namespace std::string_literals;

const std::string still = "file:///still.jpg";
constexpr auto store = "/store/Index.plist";
constexpr auto backup = "/store/Index.before-tavelle.plist";

/// What shows the still, among the items of a content.
const std::string choices =
    "<key>Choices</key><array><dict><key>Configuration</key>" +
    packed(dict("<key>type</key><string>imageFile</string><key>url</key><dict><key>relative</key><string>" + still +
                "</string></dict>")) +
    "<key>Files</key><array/><key>Provider</key><string>com.apple.wallpaper.choice.image</string></dict></array>";

/// The record after the rewrite, with this content.
std::string desktopWith(const std::string& content) {
  return "<key>Desktop</key><dict><key>Content</key><dict>" + content +
         "</dict><key>LastSet</key><date>2001-01-01T00:00:01Z</date>"
         "<key>LastUse</key><date>2001-01-01T00:00:01Z</date></dict>";
}
const std::string individual = "<key>Type</key><string>individual</string>";
const std::string fresh = individual + desktopWith("<key>Shuffle</key><string>$null</string>" + choices);
const std::string kept = "<key>Extra</key><string>kept</string>";

std::string replaced(std::string in, const std::string& what, const std::string& by) {
  return in.replace(in.find(what), what.size(), by);
}

struct StoreSync : testing::Test {
  /// A second and a half after the beginning of 2001.
  StoreSync() { clock.time = std::chrono::sys_days(std::chrono::year(2001) / 1 / 1) + 1500ms; }
  bool sync() {
    lines.clear();
    return syncAllSpaces("/still.jpg", {clock, files, processes, store},
                         [this](const std::string& line) { lines.push_back(line); });
  }
  std::string written() const { return onOneLine(parsedDictionary(files.content(store).value()).get()); }

  void expectChange(const std::string& before, const std::string& after) {
    files.put(store, before);
    EXPECT_TRUE(sync()) << before;
    EXPECT_EQ(lines, Lines{"desktops: every Space now shows still.jpg"}) << before;
    EXPECT_EQ(written(), onOneLine(parsedDictionary(after).get()));
    expectNoChange(*files.content(store));
  }
  void expectNoChange(const std::string& bytes, const Lines& told = {}) {
    files.put(store, bytes);
    EXPECT_FALSE(sync()) << bytes;
    EXPECT_EQ(lines, told) << bytes;
    EXPECT_EQ(files.content(store), bytes);
  }

  FakeClock clock;
  FakeFiles files;
  FakeProcesses processes;
  Lines lines;
  const Lines unreadable{"desktops: couldn't read the wallpaper store"};
};

TEST_F(StoreSync, RewritesTheEntriesOfEveryPlaceAndNothingElse) {
  for (const char* place :
       {"SystemDefault", "AllSpacesAndDisplays", "Displays/a", "Spaces/a/Default", "Spaces/a/Displays/b"}) {
    expectChange(storeWith(place, "<dict/>"), storeWith(place, "<dict>" + fresh + "</dict>"));
    expectNoChange(storeWith(place, "<array/>"));
  }
  for (const char* place : {"Default", "Displays", "Spaces/a", "Spaces/Displays/a/b", "Spaces/a/SystemDefault",
                            "Spaces/a/Spaces/b/Default", "Unknown/SystemDefault"}) {
    expectNoChange(storeWith(place, "<dict/>"));
  }
}

TEST_F(StoreSync, KeepsOfAnEntryWhatIsNotItsPicture) {
  const std::string other = entryShowing("file:///other.jpg", kept);
  const std::string linked =
      "<dict><key>Type</key><string>linked</string><key>Idle</key><string>gone</string><key>Other</key><true/>";
  const std::string idle = "<key>Idle</key><true/><key>Linked</key><true/>";
  for (const auto& [entry, after] :
       {std::pair(replaced(other, "<key>Desktop", idle + "<key>Desktop"),
                  individual + idle + desktopWith(choices + kept)),
        {linked + "<key>Linked</key><string>L</string></dict>", "<key>Idle</key><string>L</string>" + fresh},
        {linked + "</dict>", fresh}}) {
    expectChange(storeWith("SystemDefault", entry), storeWith("SystemDefault", "<dict>" + after + "</dict>"));
  }
  // A record to start from may be anywhere, also below one that has no content.
  const std::string deep =
      "<key>Unknown</key><dict><key>Desktop</key><dict><key>Content</key><array/></dict><key>Z</key>" + other +
      "</dict>";
  expectChange(dict("<key>SystemDefault</key><dict/>" + deep),
               dict("<key>SystemDefault</key><dict>" + individual + desktopWith(choices + kept) + "</dict>" + deep));
}

TEST_F(StoreSync, TellsAnEntryThatShowsTheStill) {
  const std::string shown = entryShowing(still);
  const std::string choice = shown.substr(shown.find("<dict><key>Configuration"));
  const std::string first = choice.substr(0, choice.find("</array>"));
  const auto withChoices = [&](const std::string& others) {
    return storeWith("SystemDefault", replaced(shown, first, others));
  };
  expectNoChange(withChoices(first + "<dict/>"));
  for (const auto& odd : {withChoices(""), withChoices("<dict/>" + first), withChoices(first + "<true/>"),
                          storeWith("SystemDefault", replaced(shown, "individual", "Individual")),
                          storeWith("SystemDefault", entryShowing(still + "?"))}) {
    expectChange(odd, storeWith("SystemDefault", "<dict>" + individual + desktopWith(choices) + "</dict>"));
  }
  // Whatever part of it is called otherwise or is something else, it shows nothing.
  for (const char* key : {"Type", "Desktop", "Content", "Choices", "Configuration"}) {
    for (const char* instead : {"<key>Other</key>", "<key>Other</key><array/><key>Another</key>"}) {
      files.put(store, storeWith("SystemDefault", replaced(shown, "<key>"s + key + "</key>", instead)));
      EXPECT_TRUE(sync()) << key << instead;
      EXPECT_FALSE(sync()) << key << instead;
    }
  }
}

TEST_F(StoreSync, KeepsEveryTypeOfValue) {
  const auto number = [](int kind, std::uint64_t value, int size) {
    return std::string(1, static_cast<char>(kind)) + bigEndian(value, size);
  };
  const std::string key = "\x62\x04\x3A\x20\xAC"s;
  for (const auto& value : {number(0x13, std::uint64_t{1} << 63, 8),                     // the least integer
                            "\x14" + bigEndian(0, 8) + bigEndian(~std::uint64_t{0}, 8),  // the greatest
                            number(0x23, 0x3FB999999999999A, 8),                         // 0.1
                            number(0x33, 0x41B2A05F20D00000, 8),                         // a date with a fraction
                            number(0x83, 0xFFFFFFFF, 4),                                 // UID
                            "\x08"s, "\x42\x00\xFF"s, "\x50"s, "\xA0"s, "\x63\x00\xE9\xD8\x3D\xDE\x00"s}) {
    files.put(store, binaryTable({"\xD2\0\1\0\3\0\2\0\4"s, key, value, "\x5DSystemDefault", "\xD0"}));
    const std::string before = replaced(written(), "<dict/>", "<dict>" + fresh + "</dict>");
    EXPECT_TRUE(sync()) << before;
    EXPECT_EQ(written(), before);
    // Not only to the library that wrote it, nor without the fraction that XML leaves out.
    EXPECT_NE(files.content(store)->find(value), std::string::npos) << before;
    EXPECT_NE(files.content(store)->find(key), std::string::npos);
  }
}

TEST_F(StoreSync, LeavesTheStoreAloneWhenItCannotGoOn) {
  EXPECT_FALSE(sync());
  EXPECT_EQ(lines, unreadable);
  EXPECT_FALSE(files.exists("/store")) << "where there is no store, none is made";
  for (const std::string bytes : {"", "garbage", "bplist00", "<plist><array/></plist>", "<plist><dict>"}) {
    expectNoChange(bytes, unreadable);
  }
  // A few hundred kilobytes that ask for hundreds of megabytes.
  const auto storeWithContent = [](const std::string& value, const std::string& displays) {
    return dict("<key>Desktop</key><dict><key>Content</key><dict><key>a</key>" + value +
                "</dict></dict><key>Displays</key><dict>" + displays + "</dict>");
  };
  std::string entries;
  for (int i = 0; i < 2000; ++i) entries += "<key>" + std::to_string(i) + "</key><dict/>";
  expectNoChange(storeWithContent("<string>" + std::string(100'000, 'a') + "</string>", entries),
                 {"desktops: couldn't update the wallpaper store: the store would become too big"});
  // Once copied two levels deeper, the content could not be read any more.
  expectNoChange(
      storeWithContent(repeated("<array>", 508) + repeated("</array>", 508), "<key>a</key><dict/>"),
      {"desktops: couldn't update the wallpaper store: the store has something in it that can't be written"});

  const std::string due = storeWith("SystemDefault", "<dict/>");
  files.full = {store};
  expectNoChange(due, {"desktops: couldn't update the wallpaper store: disk full"});
  EXPECT_EQ(processes.ran, Lines{}) << "the agent has nothing new to read";
}

TEST_F(StoreSync, KeepsOneBackupAndRestartsTheAgentAfterTheWrite) {
  const std::string due = storeWith("SystemDefault", "<dict/>");
  std::optional<std::string> atRestart;
  processes.onRun = [&] { atRestart = files.content(store); };
  files.put(store, due);
  EXPECT_TRUE(sync());
  EXPECT_EQ(atRestart, files.content(store));
  EXPECT_EQ(files.content(backup), due) << "byte for byte";
  EXPECT_FALSE(sync());
  EXPECT_EQ(processes.ran, Lines{"/usr/bin/killall WallpaperAgent"}) << "not after a sync that had nothing to write";

  processes.missing = true;
  files.put(store, storeWith("AllSpacesAndDisplays", "<dict/>"));
  EXPECT_TRUE(sync()) << "nothing to restart";
  EXPECT_EQ(files.content(backup), due);
  files.remove(backup);
  files.full = {backup};
  files.put(store, due);
  EXPECT_TRUE(sync()) << "without a backup";
}

}  // namespace
}  // namespace tavelle
