// The engine's own JavaScript reads the rules as the engine's filter does: the last one that fits decides.

#include "platform/linux/web/page_isolation.h"

#include <gtest/gtest.h>
#include <jsc/jsc.h>

#include "base/file_uri.h"
#include "platform/linux/handles.h"

namespace tavelle {
namespace {

bool isReadable(const std::string& address, const std::string& rules) {
  const auto context = adopt(jsc_context_new());
  const auto value = [&](const std::string& text) { return adopt(jsc_value_new_string(context.get(), text.c_str())); };
  jsc_context_set_value(context.get(), "rules", value(rules).get());
  jsc_context_set_value(context.get(), "address", value(address).get());
  const auto blocked = adopt(jsc_context_evaluate(context.get(), R"js(
    JSON.parse(rules).reduce((blocked, {trigger, action}) =>
      RegExp(trigger['url-filter']).test(address) ? action.type === 'block' : blocked, false))js",
                                                  -1));
  EXPECT_FALSE(jsc_context_get_exception(context.get())) << rules;
  return jsc_value_to_boolean(blocked.get()) == FALSE;
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
           {out, folder + "/outer", true},
           {out, folder + "/sub/out/a.js", true},
           {out, folder + "/a.js?x//y", true},
           {aliased, folder + "/alias/out/a.js", false},
           {aliased, folder + "/a.b", false},
           {aliased, folder + "/about/a.js", true}}) {
    EXPECT_EQ(isReadable(address, isolationRules(own, links)), readable) << address << ", " << links.leadingOut.size();
  }
}

}  // namespace
}  // namespace tavelle
