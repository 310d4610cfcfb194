// The settings: what any store must do, and what only the file can show.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <limits>

#include "base/text.h"
#include "fakes/fake_defaults.h"
#include "fakes/temporary_folder.h"
#include "platform/linux/plist_defaults.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;
using namespace std::string_literals;

void keepContract(UserDefaults& writer, const UserDefaults& reader) {
  EXPECT_EQ(reader.value("fps"), std::nullopt);
  for (const auto& value : std::initializer_list<DefaultsValue>{
           "Waves"s, ""s, " two  lines \n and <&>\"'\t"s, "\x01\x1F"s, "é🚀"s, std::int64_t{30}, std::int64_t{-5},
           std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min(), 0.35, 1e-300, -0.1, true,
           false, Strings{}, Strings{"a", "", "c"}}) {
    writer.set("key", value);
    EXPECT_EQ(reader.value("key"), value) << testing::PrintToString(value);
  }
  writer.set("other", true);
  writer.remove("key");
  EXPECT_EQ(reader.value("key"), std::nullopt);
  EXPECT_TRUE(reader.boolean("other"));

  // What a reader gets who expects another type.
  writer.set("key", "30"s);
  EXPECT_EQ(reader.integer("key"), 0);
  EXPECT_EQ(reader.real("key"), 0.0);
  EXPECT_EQ(reader.stringArray("key"), Strings{});
  writer.set("key", std::int64_t{3});
  EXPECT_EQ(reader.real("key"), 3.0);
  EXPECT_EQ(reader.string("key"), std::nullopt);
}

TEST(Defaults, KeepTheirContract) {
  FakeDefaults fake;
  keepContract(fake, fake);
  const TemporaryFolder folder;
  PlistDefaults writer(folder.path() / "new/defaults.plist");
  const PlistDefaults reader(folder.path() / "new/defaults.plist");
  keepContract(writer, reader);
}

struct DefaultsFile : testing::Test {
  TemporaryFolder folder;
  fs::path file = folder.path() / "defaults\xFF.plist";
  Strings troubles;
  PlistDefaults defaults{file};
  Registration trouble = defaults.onTrouble([this](const std::string& text) { troubles.push_back(text); });
};

TEST_F(DefaultsFile, KeepsWhatItDoesNotKnow) {
  std::ofstream(file) << R"(<plist version="1.0"><dict><key>When</key><date>2025-03-14T09:26:53Z</date>
    <key>Deep</key><dict><key>a</key><data>AAEC</data></dict><key>fps</key><integer>30</integer></dict></plist>)";
  fs::permissions(file, fs::perms(0640));
  EXPECT_EQ(defaults.integer("fps"), 30);
  EXPECT_EQ(defaults.value("When"), DefaultsValue(std::monostate{}));
  defaults.set("fps", std::int64_t{20});
  const std::string content = contentOf(file);
  EXPECT_NE(content.find("<date>2025-03-14T09:26:53Z</date>"), std::string::npos) << content;
  EXPECT_NE(content.find("AAEC"), std::string::npos) << content;
  EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
  const fs::path link = folder.path() / "the file as it is";
  fs::create_hard_link(file, link);
  defaults.set("fps", std::int64_t{20});
  defaults.remove("nothing");
  EXPECT_TRUE(fs::equivalent(file, link)) << "what is stored already is not written";
}

TEST_F(DefaultsFile, MergesWithAnotherProcess) {
  PlistDefaults other(file);
  defaults.set("fps", std::int64_t{30});
  other.set("wallpaper", "Waves"s);
  defaults.set("fps", std::int64_t{40});
  EXPECT_EQ(other.integer("fps"), 40);
  EXPECT_EQ(defaults.string("wallpaper"), "Waves");
}

TEST_F(DefaultsFile, KeepsADamagedFileAside) {
  for (int i = 1; i <= 2; ++i) {
    const std::string garbage = "<plist><dict><key>wall" + std::to_string(i);
    std::ofstream(file) << garbage;
    EXPECT_EQ(defaults.value("wallpaper"), std::nullopt);
    EXPECT_EQ(contentOf(file), garbage) << "reading changes nothing";
    defaults.set("wallpaper", "Waves"s);
    EXPECT_EQ(contentOf(file.native() + ".damaged-" + std::to_string(i)), garbage);
    EXPECT_EQ(PlistDefaults(file).string("wallpaper"), "Waves");
    defaults.remove("wallpaper");
  }
  ASSERT_EQ(troubles.size(), 2U);
  EXPECT_TRUE(isUtf8(troubles.front())) << "the event log takes nothing else";
}

TEST_F(DefaultsFile, LivesWithWhatIsNoFile) {
  ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
  EXPECT_EQ(defaults.value("fps"), std::nullopt);
  defaults.set("fps", std::int64_t{30});
  EXPECT_EQ(defaults.integer("fps"), 30);
  EXPECT_TRUE(fs::is_fifo(file)) << "what is in the way stays";
}

TEST_F(DefaultsFile, LivesOnWhenItCannotBeSaved) {
  // A file where the folder should be stops root as well.
  const fs::path blocked = folder.path() / "blocker/defaults.plist";
  std::ofstream(folder.path() / "blocker") << "mine";
  PlistDefaults stuck(blocked);
  const auto listening = stuck.onTrouble([this](const std::string& text) { troubles.push_back(text); });
  stuck.set("fps", std::int64_t{30});
  stuck.set("wallpaper", "Waves"s);
  EXPECT_EQ(stuck.integer("fps"), 30);
  EXPECT_EQ(troubles.size(), 1U) << "the same trouble once";
  EXPECT_EQ(contentOf(folder.path() / "blocker"), "mine");

  fs::remove(folder.path() / "blocker");
  stuck.set("resolutionScale", 0.5);
  EXPECT_EQ(PlistDefaults(blocked).integer("fps"), 30) << "saved along with the next";
  EXPECT_EQ(PlistDefaults(blocked).string("wallpaper"), "Waves");
}

TEST_F(DefaultsFile, WritesThroughASymbolicLink) {
  fs::create_directory(folder.path() / "dotfiles");
  std::ofstream(folder.path() / "dotfiles/real.plist") << "<plist><dict/></plist>";
  fs::create_symlink("dotfiles/real.plist", file);
  defaults.set("fps", std::int64_t{30});
  EXPECT_TRUE(fs::is_symlink(file));
  EXPECT_EQ(PlistDefaults(folder.path() / "dotfiles/real.plist").integer("fps"), 30);
}

}  // namespace
}  // namespace tavelle
