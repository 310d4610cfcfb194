#include "base/file_uri.h"

#include <gtest/gtest.h>

namespace tavelle {
namespace {

TEST(FileUri, HoldsEveryPathAndGivesItBack) {
  for (const auto& [path, uri] : {std::pair("/a/b-._~!$&'()*+,=:@", "file:///a/b-._~!$&'()*+,=:@"),
                                  {"/two words", "file:///two%20words"},
                                  {"/100%", "file:///100%25"},
                                  {"/%41", "file:///%2541"},
                                  {"/a#b?c;d", "file:///a%23b%3Fc%3Bd"},
                                  {"/\"<\\>\n", "file:///%22%3C%5C%3E%0A"},
                                  {"/é🚀", "file:///%C3%A9%F0%9F%9A%80"},
                                  {"/caf\xE9\xFF", "file:///caf%E9%FF"}}) {
    EXPECT_EQ(fileUri(path), uri);
    EXPECT_EQ(filePath(uri), path);
  }
}

TEST(FileUri, OfNoFileOfThisMachineHasNoPath) {
  EXPECT_EQ(filePath("file:///%c3%a9%41"), "/\u00E9A") << "in small letters, or escaped without need";
  for (const char* uri :
       {"", "/a", "file:", "file:/a", "file://", "file://localhost/a", "file://elsewhere/a", "http:///a", "FILE:///a",
        "file:///%", "file:///%4", "file:///%4g", "file:///%-1", "file:///a%00b"}) {
    EXPECT_EQ(filePath(uri), std::nullopt) << uri;
  }
}

}  // namespace
}  // namespace tavelle
