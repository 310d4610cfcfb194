// The engine's own JavaScript reads the rules as the engine's filter does: the last one that fits decides.

#include "platform/linux/web/page_isolation.h"

#include <gtest/gtest.h>

#include "base/file_uri.h"
#include "fakes/java_script.h"

namespace tavelle {
namespace {

bool isReadable(const std::string& address, const std::string& rules) {
  return JavaScript().evaluate(rules + ".reduce((readable, {trigger, action}) => RegExp(trigger['url-filter']).test('" +
                               address + "') ? action.type !== 'block' : readable, true)") == "true";
}

TEST(PageIsolation, LetsPagesReadTheirOwnFolderOnlyWhateverLinksLeadOutOfIt) {
  const std::string own = "/w/My.Wall+(1) [é]\"\\";
  const FolderLinks none;
  const FolderLinks out{.leadingOut = {own + "/out", own + "/sub/a.b"}, .toFoldersWithin = false};
  const FolderLinks aliased{.leadingOut = {own + "/out", own + "/sub/a.b"}, .toFoldersWithin = true};
  const std::string folder = fileUri(own);
  for (const auto& [links, address, readable] : std::initializer_list<std::tuple<FolderLinks, std::string, bool>>{
           {none, folder + "/a.js", true},
           {none, folder + "/sub/out?x#y//z", true},
           {none, folder, false},
           {none, folder + "2/a.js", false},
           {none, fileUri("/w/MyxWall+(1) [é]\"\\") + "/a.js", false},
           {none, "file:///etc/passwd#" + folder + "/", false},
           {none, folder + "/..%2FOther/a.js", false},
           {none, folder + "/..%2fOther/a.js", false},
           {none, folder + "/a.js%00", false},
           {none, folder + "//out/a.js", true},
           {none, "https://example.org/a?" + folder, true},
           {out, folder + "/out", false},
           {out, folder + "/out/a.js", false},
           {out, folder + "/out?x", false},
           {out, folder + "/o%75%74/a.js", false},
           {out, folder + "/.//out/a.js", false},
           {out, folder + "/sub/a%2eb/a.js", false},
           {out, folder + "/sub/axb", true},
           {out, folder + "/sub/out/a.js", true},
           {out, folder + "/a.js?x//y", true},
           {aliased, folder + "/alias/out/a.js", false},
           {aliased, folder + "/about/a.js", true}}) {
    EXPECT_EQ(isReadable(address, isolationRules(own, links)), readable) << address << ", " << links.leadingOut.size();
  }
}

}  // namespace
}  // namespace tavelle
