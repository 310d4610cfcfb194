#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "platform/linux/icu_text_order.h"

namespace tavelle {
namespace {

using Names = std::vector<std::string>;

Names sorted(const char* locale, Names names) {
  setenv("LC_ALL", locale, 1);
  const IcuTextOrder order;
  std::stable_sort(names.begin(), names.end(), [&](const std::string& a, const std::string& b) {
    return order.fileBrowserKey(a) < order.fileBrowserKey(b);
  });
  unsetenv("LC_ALL");
  return names;
}

TEST(TextOrder, SortsAsFileBrowsersDo) {
  const std::string longName(300, 'z');
  for (const char* locale : {"C", "C.UTF-8", "en_US.UTF-8", "nonsense"}) {
    EXPECT_EQ(sorted(locale, {"Clip 10", longName, "clip 2", "b", "Clip 1", "É", "a", "e", "B"}),
              (Names{"a", "b", "B", "Clip 1", "clip 2", "Clip 10", "e", "É", longName}))
        << locale;
  }
  EXPECT_EQ(sorted("sv_SE.UTF-8", {"ö", "z", "a"}), (Names{"a", "z", "ö"}));
  EXPECT_EQ(sorted("de_DE.UTF-8", {"ö", "z", "a"}), (Names{"a", "ö", "z"}));
}

}  // namespace
}  // namespace tavelle
