#include "base/property_list.h"

#include <gtest/gtest.h>
#include <locale.h>
#include <stdlib.h>

#include <fstream>
#include <string>
#include <vector>

#include "desktop_picture/store_values.h"
#include "fakes/temporary_folder.h"

namespace tavelle {
namespace {

TEST(PropertyList, ReadsDecimalsWithAPointWhereTheUsersHaveAComma) {
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

TEST(PlistGuard, RefusesWhatWouldHarmAndNothingElse) {
  using namespace std::string_literals;
  // Arrays in each other, each with so many references to the next one.
  const auto nested = [](int levels, int references, const std::string& last) {
    std::vector<std::string> arrays;
    for (int i = 1; i < levels; ++i) {
      arrays.push_back(static_cast<char>(0xA0 + references) +
                       repeated(bigEndian(static_cast<std::uint64_t>(i), 2), references));
    }
    arrays.push_back(last);
    return binaryTable(arrays);
  };
  const std::string thousand = "\xAF\x11" + bigEndian(1000, 2) + repeated(bigEndian(1, 2), 1000);
  const auto bigText = [](std::uint64_t length) {
    return "\x5F\x12" + bigEndian(length, 4) + std::string(length, 'a');
  };
  const std::string sound = binaryTable({"\xD1\0\1\0\2"s, "\x51k", "\x51v"});
  const auto trailer = [&](std::size_t fromEnd, const std::string& bytes) {
    return std::string(sound).replace(sound.size() - fromEnd, bytes.size(), bytes);
  };
  const auto array = [](const std::string& content) { return xml("<array>" + content + "</array>"); };
  const auto deep = [](const std::string& open, const std::string& close, int levels = 100'000) {
    return xml(repeated(open, levels) + repeated(close, levels));
  };
  for (const auto& [what, bytes, taken] : std::initializer_list<std::tuple<const char*, std::string, bool>>{
           {"sound", sound, true},
           {"512 levels, binary", nested(512, 1, "\xA0"), true},
           {"513 levels, binary", nested(513, 1, "\xA0"), false},
           {"each level twice the one below", nested(16, 2, "\x09"), false},
           {"a big text a thousand times", binaryTable({thousand, bigText(10'000)}), true},
           {"a huge text a thousand times", binaryTable({thousand, bigText(200'000)}), false},
           {"an array in itself", binaryTable({"\xA1\0\0"s}), false},
           {"a reference to nothing", binaryTable({"\xA1\0\7"s}), false},
           {"cut trailer", sound.substr(0, sound.size() - 1), false},
           {"number of objects", trailer(24, bigEndian(~std::uint64_t{0}, 8)), false},
           {"root object", trailer(16, bigEndian(3, 8)), false},
           {"place of the table", trailer(8, bigEndian(~std::uint64_t{7}, 8)), false},
           {"ASCII that is none", binaryTable({"\x52\xE0z"}), false},
           {"text with a zero", binaryTable({"\x53z\0z"s}), false},
           {"wide text with a zero", binaryTable({"\x62\0\0\0a"s}), false},
           {"half a pair", binaryTable({"\x62\xD8\x3D\0a"s}), false},
           {"pair the wrong way round", binaryTable({"\x62\xDE\0\xD8\x3D"s}), false},

           {"512 levels", deep("<array>", "</array>", 512), true},
           {"513 levels", deep("<array>", "</array>", 513), false},
           {"dictionaries", deep("<dict><key>a</key>", "</dict>"), false},
           {"many empty ones, none in another", array(repeated("<array/><dict/><array></array>", 2000)), true},
           {"closed in comments", deep("<array><!--</array>-->", "</array>"), false},
           {"closed behind a sign in declarations", deep("<array><!DOCTYPE a [ > </array> ]>", "</array>"), false},
           {"closed behind a sign in an instruction", deep("<array><?x > </array> ?>", "</array>"), false},
           {"closed in a text", deep("<array><string><![CDATA[></array>]]></string>", "</array>"), false},
           {"usual head", "<?xml version=\"1.0\"?><!DOCTYPE plist PUBLIC \"-//A//B\" \"http://a/b.dtd\">" + array(""),
            true},
           {"endless names of characters", xml("<string>" + repeated("&amp;", 1'000'000) + "</string>"), false},
           {"zero in XML", xml("<string>a\0b</string>"s), false},
           {"no UTF-8", xml("<string>\xE0z</string>"), false}}) {
    EXPECT_EQ(parsedPlist(bytes) != nullptr, taken) << what;
  }
}

}  // namespace
}  // namespace tavelle
