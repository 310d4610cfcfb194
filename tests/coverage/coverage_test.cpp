#include "coverage/coverage.h"

#include <gtest/gtest.h>

#include "fakes/fake_desktop.h"
#include "platform/screens.h"

namespace tavelle {
namespace {

TEST(Coverage, CountsThePointsOfTheDesktopThatWindowsHide) {
  // Cells of 10 by 10, with centres at 5, 15 and so on.
  constexpr Rect whole{0, 0, 480, 300};
  const Screen plain{"plain", whole, whole, whole};
  // A panel of 20 at the top, 40 at the bottom, 60 at the left, 80 at the right; the screen stands elsewhere in the two
  // spaces.
  const Screen panels{"panels", {1000, 200, 620, 360}, {1060, 240, 480, 300}, {1000, -100, 620, 360}};
  using Case = std::tuple<const char*, Screen, std::vector<Rect>, int>;
  for (const auto& [what, screen, windows, points] : std::initializer_list<Case>{
           {"no windows", plain, {}, 0},
           {"two that overlap", plain, {{-50, -50, 350, 500}, {200, 0, 400, 300}}, 1440},
           {"left and top edges count", plain, {{5, 5, 0.5, 0.5}}, 1},
           {"right and bottom edges do not", plain, {{-5, -5, 10, 10}}, 0},
           {"exactly what panels leave", panels, {{1060, -80, 480, 300}}, 1440},
           {"just beside the panels",
            panels,
            {{1060, -80, 480, 10}, {1060, 210, 480, 10}, {1060, -80, 10, 300}, {1530, -80, 10, 300}},
            2 * 48 + 2 * 28},
           {"panels leave nothing", {"", whole, {480, 0, 0, 300}, whole}, {whole}, 0},
           {"no geometry", {}, {whole}, 0}}) {
    EXPECT_EQ(coverage(screen, windows), points / 1440.0) << what;
  }
  EXPECT_TRUE(countsAsCovered(1419 / 1440.0));
  EXPECT_FALSE(countsAsCovered(1418 / 1440.0));
}

TEST(Coverage, OnlyVisibleOrdinaryWindowsOfOthersCount) {
  constexpr Rect place{10, 20, 300, 200};
  FakeWindowList list;
  using Case = std::tuple<const char*, WindowDescription, bool>;
  for (const auto& [what, window, counts] :
       std::initializer_list<Case>{{"ordinary", {0, 1, 1.0, place}, true},
                                   {"no owner, no alpha", {0, {}, {}, place}, true},
                                   {"just visible", {0, 1, 0.06, place}, true},
                                   {"just invisible", {0, 1, 0.05, place}, false},
                                   {"the program's own", {0, 77, 1.0, place}, false},
                                   {"a panel", {1, 1, 1.0, place}, false},
                                   {"no layer", {{}, 1, 1.0, place}, false},
                                   {"nowhere", {0, 1, 1.0, {}}, false},
                                   {"just too narrow", {0, 1, 1.0, Rect{0, 0, 40, 200}}, false},
                                   {"just too low", {0, 1, 1.0, Rect{0, 0, 200, 40}}, false},
                                   {"small", {0, 1, 1.0, Rect{0, 0, 41, 41}}, true}}) {
    list.windows = {window};
    EXPECT_EQ(otherWindowRects(list, 77), counts ? std::vector{*window.bounds} : std::vector<Rect>()) << what;
  }
  list.windows.reset();
  EXPECT_TRUE(otherWindowRects(list, 77).empty()) << "no list";
}

}  // namespace
}  // namespace tavelle
