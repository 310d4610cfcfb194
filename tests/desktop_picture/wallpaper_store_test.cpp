#include "desktop_picture/wallpaper_store.h"

#include <gtest/gtest.h>
#include <locale.h>
#include <stdlib.h>

#include <fstream>

#include "desktop_picture/store_fuzz.h"
#include "desktop_picture/store_values.h"
#include "fakes/fake_desktop.h"
#include "fakes/fake_files.h"
#include "fakes/temporary_folder.h"

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

std::string xml(const std::string& content) { return R"(<?xml version="1.0"?><plist>)" + content + "</plist>"; }
std::string dict(const std::string& content) { return xml("<dict>" + content + "</dict>"); }
std::string repeated(const std::string& what, int times) {
  std::string result;
  while (times-- > 0) result += what;
  return result;
}

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

TEST(StoreRewrite, ReadsDecimalsWithAPointWhereTheUsersHaveAComma) {
  using namespace std::string_literals;
  // A locale that differs in this only: the point, the sign between thousands, their grouping, both signs once more
  // as wide characters, the character set.
  const TemporaryFolder locales;
  std::filesystem::create_directory(locales.path() / "comma");
  std::ofstream(locales.path() / "comma/LC_NUMERIC", std::ios::binary)
      << "\x14\x11\x03\x20\x06\0\0\0\x20\0\0\0\x22\0\0\0\x23\0\0\0\x24\0\0\0\x28\0\0\0\x2C\0\0\0"s
      << ",\0\0\0,\0\0\0\0\0\0\0UTF-8\0"s;
  setenv("LOCPATH", locales.path().c_str(), 1);
  const bool comma = setlocale(LC_NUMERIC, "comma") != nullptr && localeconv()->decimal_point == ","s;
  double read = 0;
  const PlistPtr list = parsedPlist(xml("<real>3.25</real>"));
  if (list) plist_get_real_val(list.get(), &read);
  const std::string written = xmlPlist(PlistPtr(plist_new_real(3.25)).get()).value();
  setlocale(LC_NUMERIC, "C");
  unsetenv("LOCPATH");
  EXPECT_TRUE(comma);
  EXPECT_EQ(read, 3.25);
  EXPECT_NE(written.find("<real>3.25</real>"), std::string::npos) << written;
}

// --- What the library alone could not bear

TEST(PlistGuard, RefusesWhatWouldHarmAndNothingElse) {
  using namespace std::string_literals;
  const auto nested = [](int levels) {
    std::vector<std::string> arrays;
    for (int i = 1; i < levels; ++i) arrays.push_back("\xA1" + bigEndian(static_cast<std::uint64_t>(i), 2));
    arrays.emplace_back("\xA0");
    return binaryTable(arrays);
  };
  std::vector<std::string> doubling;
  for (int i = 1; i < 16; ++i) {
    const std::string next = bigEndian(static_cast<std::uint64_t>(i), 2);
    doubling.push_back("\xA2" + next + next);
  }
  doubling.emplace_back("\x09");
  const std::string thousand = "\xAF\x11" + bigEndian(1000, 2) + repeated(bigEndian(1, 2), 1000);
  const auto bigText = [](std::uint64_t length) {
    return "\x5F\x12" + bigEndian(length, 4) + std::string(length, 'a');
  };
  const std::string sound = binaryTable({"\xD1\0\1\0\2"s, "\x51k", "\x51v"});
  const auto trailer = [&](std::size_t fromEnd, const std::string& bytes) {
    return std::string(sound).replace(sound.size() - fromEnd, bytes.size(), bytes);
  };
  const auto array = [](const std::string& content) { return xml("<array>" + content + "</array>"); };
  const auto deep = [&](const std::string& open, const std::string& close) {
    return xml(repeated(open, 100'000) + repeated(close, 100'000));
  };
  struct Case {
    const char* what;
    std::string bytes;
    bool taken;
  };
  for (const auto& [what, bytes, taken] : std::initializer_list<Case>{
           {"sound", sound, true},
           {"512 levels, binary", nested(512), true},
           {"513 levels, binary", nested(513), false},
           {"65000 levels, binary", nested(65'000), false},
           {"each level twice the one below", binaryTable(doubling), false},
           {"a big text a thousand times", binaryTable({thousand, bigText(10'000)}), true},
           {"a huge text a thousand times", binaryTable({thousand, bigText(200'000)}), false},
           {"an array in itself", binaryTable({"\xA1\0\0"s}), false},
           {"two arrays in each other", binaryTable({"\xA1\0\1"s, "\xA1\0\0"s}), false},
           {"a reference to nothing", binaryTable({"\xA1\0\7"s}), false},
           {"more elements than bytes", binaryTable({"\xAF\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s}), false},
           {"a count of 32768 bytes", binaryTable({"\xAF\x1F\x7F"s}), false},
           {"cut trailer", sound.substr(0, sound.size() - 1), false},
           {"trailer only", sound.substr(sound.size() - 32), false},
           {"magic only", "bplist00", false},
           {"no bytes", "", false},
           {"number of objects", trailer(24, bigEndian(~std::uint64_t{0}, 8)), false},
           {"root object", trailer(16, bigEndian(3, 8)), false},
           {"place of the table", trailer(8, bigEndian(~std::uint64_t{7}, 8)), false},
           {"size of offsets", trailer(26, "\xFF"), false},
           {"size of references", trailer(25, "\0"s), false},
           {"ASCII that is none",
            binaryTable({"\x52\xE0"
                         "a"}),
            false},
           {"text with a zero",
            binaryTable({"\x53"
                         "a\0b"s}),
            false},
           {"wide text with a zero", binaryTable({"\x62\0\0\0a"s}), false},
           {"half a pair at the end", binaryTable({"\x61\xD8\x3D"s}), false},
           {"half a pair", binaryTable({"\x62\xD8\x3D\0a"s}), false},
           {"pair the wrong way round", binaryTable({"\x62\xDE\0\xD8\x3D"s}), false},

           {"XML", array("<true/>"), true},
           {"512 levels", xml(repeated("<array>", 512) + repeated("</array>", 512)), true},
           {"513 levels", xml(repeated("<array>", 513) + repeated("</array>", 513)), false},
           {"arrays", deep("<array>", "</array>"), false},
           {"dictionaries", deep("<dict><key>a</key>", "</dict>"), false},
           {"many empty ones, none in another", array(repeated("<array/><dict/><array></array>", 2000)), true},
           {"closed in comments", deep("<array><!--</array>-->", "</array>"), false},
           {"closed in quotes", deep("<array a=\"</array>\">", "</array>"), false},
           {"closed behind a sign in quotes", deep("<array a=\"></array>\">", "</array>"), false},
           {"closed behind a sign in declarations", deep("<array><!DOCTYPE a [ > </array> ]>", "</array>"), false},
           {"closed in instructions", deep("<array><?x </array> ?>", "</array>"), false},
           {"closed behind a sign in an instruction", deep("<array><?x > </array> ?>", "</array>"), false},
           {"closed in quotes of an instruction", deep("<array><?x \"?>\"</array>\" ?>", "</array>"), false},
           {"closed in a text", deep("<array><string><![CDATA[></array>]]></string>", "</array>"), false},
           {"closed in declarations", "<!DOCTYPE plist [<!ENTITY a '</array>'>]>" + array(""), false},
           {"opened in a comment", array("<!-- " + repeated("<array>", 600) + "-->"), true},
           {"usual head", "<?xml version='1.0'?><!DOCTYPE plist PUBLIC \"-//A//B\" \"http://a/b.dtd\">" + array(""),
            true},
           {"names of characters", xml("<string>" + repeated("&amp;", 1000) + "</string>"), true},
           {"endless names of characters", xml("<string>" + repeated("&amp;", 1'000'000) + "</string>"), false},
           {"zero in XML", xml("<string>a\0b</string>"s), false},
           {"no UTF-8",
            xml("<string>\xE0"
                "a</string>"),
            false}}) {
    EXPECT_EQ(parsedPlist(bytes) != nullptr, taken) << what;
  }
  const std::string whole = dict("<key>a</key><array><string>b</string></array>");
  for (std::size_t length = 0; length < whole.size() - std::string("</plist>").size(); ++length) {
    EXPECT_FALSE(parsedPlist(std::string_view(whole).substr(0, length))) << length;
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
