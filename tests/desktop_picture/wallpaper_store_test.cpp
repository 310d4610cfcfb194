#include "desktop_picture/wallpaper_store.h"

#include <gtest/gtest.h>

#include "desktop_picture/store_fuzz.h"
#include "desktop_picture/store_values.h"
#include "fakes/fake_desktop.h"
#include "fakes/fake_files.h"

namespace tavelle {
namespace {

using Lines = std::vector<std::string>;
using Kind = Value::Kind;
using namespace std::chrono_literals;

const std::string still = "file:///still.jpg";
constexpr auto store = "/store/Index.plist";
constexpr auto backup = "/store/Index.before-tavelle.plist";
/// A second and a half after the beginning of 2001.
constexpr WallTime now = std::chrono::sys_days(std::chrono::year(2001) / 1 / 1) + 1500ms;

Value stillChoice() {
  const Value url = dictionaryOf({{"relative", text(still)}});
  return dictionaryOf({{"Configuration", packed(dictionaryOf({{"type", text("imageFile")}, {"url", url}}))},
                       {"Files", {Kind::array, {}, {}, {}}},
                       {"Provider", text("com.apple.wallpaper.choice.image")}});
}

// --- The rewrite once more, as plainly as can be, to compare the program's with.

/// The contents that a record can start from: which one is found first depends on the order of keys.
void addTemplates(const Value& value, std::vector<Value>& found) {
  const Value* desktop = value.dictionary("Desktop");
  if (const Value* content = desktop ? desktop->dictionary("Content") : nullptr) {
    found.push_back(*content);
    return;
  }
  for (const auto& [key, item] : value.items) addTemplates(item, found);
}

Value recordFrom(Value content) {
  content.items["Choices"] = {Kind::array, {}, {stillChoice()}, {}};
  const Value date{Kind::other, {}, {}, std::to_string(PLIST_DATE) + " 1 500000"};
  return dictionaryOf({{"Content", std::move(content)}, {"LastSet", date}, {"LastUse", date}});
}

bool isRight(const Value& entry) {
  const Value* type = entry.item("Type", Kind::text);
  if (!type || type->content != "individual") return false;
  const Value* desktop = entry.dictionary("Desktop");
  const Value* content = desktop ? desktop->dictionary("Content") : nullptr;
  const Value* choices = content ? content->item("Choices", Kind::array) : nullptr;
  if (!choices || choices->elements.empty()) return false;
  for (const Value& each : choices->elements) {
    if (!each.isDictionary()) return false;
  }
  const Value* configuration = choices->elements[0].item("Configuration", Kind::packed);
  const Value* url = configuration ? configuration->elements[0].dictionary("url") : nullptr;
  const Value* relative = url ? url->item("relative", Kind::text) : nullptr;
  return relative && relative->content == still;
}

/// The store after the rewrite.
Value expected(Value root, const Value& record, bool& changed) {
  const auto visit = [&](Value& holder, const std::string& key) {
    if (!holder.dictionary(key) || isRight(holder.items[key])) return;
    changed = true;
    Value& entry = holder.items[key];
    const Value* type = entry.item("Type", Kind::text);
    if (type && type->content == "linked") {
      const bool keeps = entry.items.contains("Linked");
      entry = keeps ? dictionaryOf({{"Idle", entry.items["Linked"]}}) : Value{};
    }
    entry.items["Type"] = text("individual");
    entry.items["Desktop"] = record;
  };
  const auto visitDisplays = [&](Value& holder) {
    if (!holder.dictionary("Displays")) return;
    for (auto& [key, item] : holder.items["Displays"].items) visit(holder.items["Displays"], key);
  };
  visit(root, "SystemDefault");
  visit(root, "AllSpacesAndDisplays");
  visitDisplays(root);
  if (!root.dictionary("Spaces")) return root;
  for (auto& [key, space] : root.items["Spaces"].items) {
    visit(space, "Default");
    visitDisplays(space);
  }
  return root;
}

TEST(StoreRewrite, DoesWhatItsPlainRestatementDoes) {
  StoreMaker maker(20010101, still);
  int changes = 0;
  int templates = 0;
  for (int round = 0; round < 1500; ++round) {
    const std::string bytes = maker.bytes(maker.store());
    const PlistPtr root = parsedDictionary(bytes);
    ASSERT_TRUE(root);
    const Value before = valueOf(root.get());
    const auto changed = rewriteStore(root.get(), still, now);
    ASSERT_TRUE(changed);
    const PlistPtr written = parsedDictionary(binaryPlist(root.get()).value());
    ASSERT_TRUE(written);
    const Value after = valueOf(written.get());

    std::vector<Value> contents;
    addTemplates(before, contents);
    templates += contents.empty() ? 0 : 1;
    if (contents.empty()) contents.push_back(dictionaryOf({{"Shuffle", text("$null")}}));
    bool due = false;
    const bool found = std::any_of(contents.begin(), contents.end(), [&](const Value& content) {
      due = false;
      return expected(before, recordFrom(content), due) == after;
    });
    ASSERT_TRUE(found && due == *changed) << "round " << round << inWords(before) << "became" << inWords(after);
    changes += *changed ? 1 : 0;
  }
  // Neither kind is rare.
  EXPECT_TRUE(changes > 300 && changes < 1200 && templates > 500 && templates < 1400) << changes << ' ' << templates;
}

TEST(StoreRewrite, KeepsEveryTypeOfValue) {
  using namespace std::string_literals;
  // "Displays" is a text, so that nothing is rewritten but the default. Binary: XML knows no fractions of dates.
  const auto number = [](int kind, std::uint64_t value, int size) {
    return std::string(1, static_cast<char>(kind)) + bigEndian(value, size);
  };
  const std::vector<std::string> values{number(0x13, ~std::uint64_t{0}, 8),       // -1
                                        number(0x13, std::uint64_t{1} << 63, 8),  // the least
                                        "\x14" + bigEndian(0, 8) + bigEndian(~std::uint64_t{0}, 8),
                                        number(0x23, 0x3FB999999999999A, 8),  // 0.1
                                        number(0x22, 0x3FC00000, 4),          // 1.5, single
                                        number(0x33, 0x41B2A05F20D00000, 8),  // a date with a fraction
                                        number(0x33, 0xC22D5C2A18000000, 8),  // the year 1
                                        number(0x83, 0xFFFFFFFF, 4),          // UID
                                        "\x08",
                                        "\x09",
                                        "\x40",
                                        "\x42\x00\xFF"s,
                                        "\x50",
                                        "\xA0",
                                        "\xD0",
                                        "\x63\x00\xE9\xD8\x3D\xDE\x00"s,  // a letter with an accent, a face
                                        "\x53 a "};
  for (const auto& value : values) {
    const std::string key = "\x62\x04\x3A\x20\xAC"s;
    const std::string bytes = binaryTable({"\xD2\0\1\0\3\0\2\0\4"s, key, value, "\x5DSystemDefault", "\xD0"});
    const PlistPtr root = parsedDictionary(bytes);
    ASSERT_TRUE(root);
    const Value before = valueOf(root.get());
    EXPECT_TRUE(*rewriteStore(root.get(), still, now));
    const std::string written = binaryPlist(root.get()).value();
    // Not only to the library that wrote it: a single number becomes a double one at most.
    const bool single = value[0] == 0x22;
    EXPECT_TRUE(single || written.find(value) != std::string::npos) << inWords(before);
    EXPECT_NE(written.find(key), std::string::npos);
    const Value after = valueOf(parsedDictionary(written).get());
    EXPECT_EQ(after.items.at("к€"), before.items.at("к€")) << inWords(before);
  }
}

TEST(StoreFuzz, DamagedStoresStayAsTheyAreOrBecomeSound) {
  DamagedStores stores(5);
  std::map<Synced, int> counts;
  for (int i = 0; i < 600; ++i) {
    const Outcome outcome = syncTwice(stores.next());
    EXPECT_EQ(outcome.trouble, "") << "input " << i;
    ++counts[outcome.synced];
  }
  EXPECT_TRUE(counts[Synced::rewritten] > 60 && counts[Synced::unreadable] > 60) << "too few of one kind";
}

// --- The whole pass

struct StoreSync : testing::Test {
  StoreSync() { clock.time = now; }
  bool sync() {
    lines.clear();
    processes.ran.clear();
    return syncAllSpaces("/still.jpg", {clock, files, processes, store},
                         [this](const std::string& line) { lines.push_back(line); });
  }
  Value written() const { return valueOf(parsedDictionary(files.content(store).value()).get()); }

  FakeClock clock;
  FakeFiles files;
  FakeProcesses processes;
  Lines lines;
  const Lines done{"desktops: every Space now shows still.jpg"};
  const Lines unreadable{"desktops: couldn't read the wallpaper store"};
  const Lines restart{"/usr/bin/killall WallpaperAgent"};
};

TEST_F(StoreSync, RewritesEntriesThatDoNotShowTheStill) {
  const Value bare = recordFrom(dictionaryOf({{"Shuffle", text("$null")}}));
  const Value old = dictionaryOf({{"Content", dictionaryOf({{"Choices", text("old")}, {"Extra", text("kept")}})}});
  const Value copied = recordFrom(old.items.at("Content"));
  const std::string oldXml =
      "<key>Desktop</key><dict><key>Content</key><dict><key>Choices</key><string>old</string>"
      "<key>Extra</key><string>kept</string></dict><key>LastSet</key><string>gone</string></dict>";
  const Value individual = text("individual");
  const Value linked = text("L");
  struct Case {
    const char* what;
    const char* key;
    std::string entry;
    Value rewritten;
  };
  for (const auto& [what, key, entry, rewritten] : std::initializer_list<Case>{
           {"linked", "AllSpacesAndDisplays",
            "<key>Type</key><string>linked</string><key>Linked</key><string>L</string><key>Other</key><true/>",
            dictionaryOf({{"Idle", linked}, {"Type", individual}, {"Desktop", bare}})},
           {"linked to nothing", "SystemDefault",
            "<key>Type</key><string>linked</string><key>Idle</key><string>gone</string>",
            dictionaryOf({{"Type", individual}, {"Desktop", bare}})},
           {"another picture", "SystemDefault",
            oldXml + "<key>Type</key><string>individual</string><key>Idle</key><string>L</string>"
                     "<key>Linked</key><string>L</string>",
            dictionaryOf({{"Idle", linked}, {"Linked", linked}, {"Type", individual}, {"Desktop", copied}})},
           {"no type", "SystemDefault", "", dictionaryOf({{"Type", individual}, {"Desktop", bare}})}}) {
    files.remove("/store");
    files.put(store, dict("<key>" + std::string(key) + "</key><dict>" + entry + "</dict>"));
    EXPECT_TRUE(sync()) << what;
    EXPECT_EQ(lines, done) << what;
    EXPECT_EQ(written(), dictionaryOf({{key, rewritten}})) << what << inWords(written());
    EXPECT_TRUE(files.content(store)->starts_with("bplist00")) << what;
    EXPECT_FALSE(sync()) << what;
    EXPECT_EQ(lines, Lines{}) << what;
    EXPECT_EQ(processes.ran, Lines{}) << what;
  }
}

TEST_F(StoreSync, LeavesTheStoreAloneWhenItCannotGoOn) {
  const std::string due = dict("<key>SystemDefault</key><dict/>");
  for (const std::string bytes : {"", "garbage", "bplist00", "<plist><array/></plist>", "<plist><dict>"}) {
    files.put(store, bytes);
    EXPECT_FALSE(sync());
    EXPECT_EQ(lines, unreadable) << bytes;
    EXPECT_EQ(files.content(store), bytes);
  }
  for (const std::string entries : {"", "<key>Spaces</key><array/>", "<key>Displays</key><string>a</string>",
                                    "<key>Spaces</key><dict><key>a</key><true/></dict>"}) {
    files.put(store, dict(entries));
    EXPECT_FALSE(sync());
    EXPECT_EQ(lines, Lines{}) << entries;
    EXPECT_EQ(files.content(store), dict(entries));
  }
  // A few hundred kilobytes that ask for hundreds of megabytes.
  std::string entries;
  for (int i = 0; i < 2000; ++i) entries += "<key>" + std::to_string(i) + "</key><dict/>";
  const std::string greedy =
      dict("<key>Desktop</key><dict><key>Content</key><dict><key>a</key><string>" + std::string(100'000, 'a') +
           "</string></dict></dict><key>Displays</key><dict>" + entries + "</dict>");
  files.put(store, greedy);
  EXPECT_FALSE(sync());
  EXPECT_EQ(lines, unreadable);
  EXPECT_EQ(files.content(store), greedy);
  // Once copied two levels deeper, the content could not be read any more.
  const std::string deep =
      dict("<key>Desktop</key><dict><key>Content</key><dict><key>a</key>" + repeated("<array>", 508) +
           repeated("</array>", 508) + "</dict></dict><key>Displays</key><dict><key>a</key><dict/></dict>");
  files.put(store, deep);
  EXPECT_FALSE(sync());
  EXPECT_EQ(lines, Lines{"desktops: couldn't update the wallpaper store: the store has something in it that can't be "
                         "written"});
  EXPECT_EQ(files.content(store), deep);

  files.remove("/store");
  EXPECT_FALSE(sync());
  EXPECT_EQ(lines, unreadable);
  EXPECT_FALSE(files.exists("/store"));

  files.put(store, due);
  files.broken = {store};
  EXPECT_FALSE(sync());
  EXPECT_EQ(lines, unreadable) << "not to be read";
  files.broken.clear();
  files.full = {store};
  EXPECT_FALSE(sync());
  EXPECT_EQ(lines, Lines{"desktops: couldn't update the wallpaper store: disk full"});
  EXPECT_EQ(files.content(store), due);
  EXPECT_EQ(files.content(backup), due);
  EXPECT_EQ(processes.ran, Lines{});
}

TEST_F(StoreSync, KeepsOneBackupAndRestartsTheAgentAfterTheWrite) {
  const auto due = [](int number) {
    return dict("<key>SystemDefault</key><dict/><key>n</key><integer>" + std::to_string(number) + "</integer>");
  };
  std::optional<std::string> atRestart;
  processes.onRun = [&] { atRestart = files.content(store); };
  files.put(store, due(1));
  EXPECT_TRUE(sync());
  EXPECT_EQ(processes.ran, restart);
  EXPECT_EQ(atRestart, files.content(store));
  EXPECT_EQ(files.content(backup), due(1)) << "byte for byte";

  processes.missing = true;
  files.put(store, due(2));
  EXPECT_TRUE(sync());
  EXPECT_EQ(lines, done) << "nothing to restart";
  EXPECT_EQ(files.content(backup), due(1));

  files.remove(backup);
  files.broken = {backup};
  files.put(store, due(3));
  EXPECT_TRUE(sync());
  EXPECT_EQ(lines, done) << "without a backup";
  EXPECT_FALSE(files.exists(backup));

  files.broken.clear();
  files.put(store, due(4));
  EXPECT_TRUE(sync());
  EXPECT_EQ(files.content(backup), due(4));
}

}  // namespace
}  // namespace tavelle
