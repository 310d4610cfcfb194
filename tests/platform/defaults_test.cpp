#include <gtest/gtest.h>

#include <limits>

#include "base/text.h"
#include "fakes/temporary_folder.h"
#include "platform/linux/plist_defaults.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;
using namespace std::string_literals;

struct DefaultsFile : testing::Test {
  TemporaryFolder folder;
  fs::path file = folder.path() / "defaults\xFF.plist";
  Strings troubles;
  PlistDefaults defaults{file};
  Registration trouble = defaults.onTrouble([this](const std::string& text) { troubles.push_back(text); });
};

TEST_F(DefaultsFile, KeepsEachTypeOfValue) {
  const PlistDefaults other(file);
  EXPECT_EQ(other.value("key"), std::nullopt);
  for (const auto& value : std::initializer_list<DefaultsValue>{
           "Waves"s, ""s, " two  lines \n and <&>\"'\t"s, "\x01\x1F"s, "é🚀"s, std::int64_t{-5},
           std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min(), 0.35, 1e-300, -0.1, true,
           false, Strings{}, Strings{"a", "", "c"}}) {
    defaults.set("key", value);
    EXPECT_EQ(other.value("key"), value) << testing::PrintToString(value);
  }
  defaults.set("other", true);
  defaults.remove("key");
  EXPECT_EQ(other.value("key"), std::nullopt);
  EXPECT_TRUE(other.boolean("other"));

  // What a reader gets who expects another type.
  defaults.set("key", "30"s);
  EXPECT_EQ(other.integer("key"), 0);
  EXPECT_EQ(other.stringArray("key"), Strings{});
  defaults.set("key", std::int64_t{3});
  EXPECT_EQ(other.real("key"), 3.0);
  EXPECT_EQ(other.string("key"), std::nullopt);
}

TEST_F(DefaultsFile, KeepsWhatItDoesNotKnow) {
  std::ofstream(file) << R"(<plist version="1.0"><dict><key>When</key><date>2025-03-14T09:26:53Z</date>
    <key>Deep</key><dict><key>a</key><data>AAEC</data></dict><key>fps</key><integer>30</integer></dict></plist>)";
  fs::permissions(file, fs::perms(0640));
  EXPECT_EQ(defaults.integer("fps"), 30);
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

TEST_F(DefaultsFile, LivesOnWhenItCannotBeSaved) {
  // A folder in the file's place stops root as well.
  fs::create_directories(file / "mine");
  defaults.set("fps", std::int64_t{30});
  defaults.set("wallpaper", "Waves"s);
  EXPECT_EQ(defaults.integer("fps"), 30);
  EXPECT_TRUE(fs::exists(file / "mine"));
  fs::remove_all(file);
  defaults.set("resolutionScale", 0.5);
  EXPECT_EQ(PlistDefaults(file).integer("fps"), 30) << "saved along with the next";
  EXPECT_EQ(PlistDefaults(file).string("wallpaper"), "Waves");
}

}  // namespace
}  // namespace tavelle
