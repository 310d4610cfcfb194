#include "coverage/coverage.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "coverage/coverage_report.h"
#include "fakes/fake_platform.h"

namespace tavelle {
namespace {

/// What coverage means, point by point: the yardstick for the way in which it is computed.
double coverageByDefinition(const Rect& area, const std::vector<Rect>& windows) {
  int covered = 0;
  for (int row = 0; row < 30; ++row) {
    for (int column = 0; column < 48; ++column) {
      const double x = area.x + (column + 0.5) * area.width / 48;
      const double y = area.y + (row + 0.5) * area.height / 30;
      covered += std::any_of(windows.begin(), windows.end(), [&](const Rect& window) {
        const Rect kept = intersection(window, area);
        return kept.x <= x && x < kept.maxX() && kept.y <= y && y < kept.maxY();
      });
    }
  }
  return covered / 1440.0;
}

Screen screenWithoutPanels(const Rect& bounds) { return {"screen", bounds, bounds, bounds}; }

TEST(Coverage, CountsThePointsOfTheDesktopThatWindowsHide) {
  // Cells of 10 by 10, with centres at 5, 15 and so on.
  const Screen plain = screenWithoutPanels({0, 0, 480, 300});
  // A panel of 20 at the top, 40 at the bottom, 60 at the left, 80 at the right; the screen stands elsewhere in the two
  // spaces.
  const Screen panels{"panels", {1000, 200, 620, 360}, {1060, 240, 480, 300}, {1000, -100, 620, 360}};
  struct Case {
    const char* what;
    Screen screen;
    std::vector<Rect> windows;
    int points;
  };
  for (const auto& [what, screen, windows, points] : std::initializer_list<Case>{
           {"no windows", plain, {}, 0},
           {"exactly the desktop", plain, {{0, 0, 480, 300}}, 1440},
           {"two that overlap", plain, {{-50, -50, 350, 500}, {200, 0, 400, 300}}, 1440},
           {"left and top edges count", plain, {{5, 5, 10, 10}}, 1},
           {"right and bottom edges do not", plain, {{-5, -5, 10, 10}}, 0},
           {"exactly what panels leave", panels, {{1060, -80, 480, 300}}, 1440},
           {"just beside the panels",
            panels,
            {{1060, -80, 480, 10}, {1060, 210, 480, 10}, {1060, -80, 10, 300}, {1530, -80, 10, 300}},
            2 * 48 + 2 * 28},
           {"only panels", panels, {{1000, -100, 620, 20}, {1000, -100, 60, 360}, {1540, -100, 80, 360}}, 0},
           {"panels leave nothing", {"", {0, 0, 480, 300}, {480, 0, 0, 300}, {0, 0, 480, 300}}, {{0, 0, 480, 300}}, 0},
           {"no geometry", {}, {{0, 0, 480, 300}}, 0}}) {
    EXPECT_EQ(coverage(screen, windows), points / 1440.0) << what;
  }
}

TEST(Coverage, EqualsItsDefinitionPointByPoint) {
  std::mt19937 random(20);
  const auto upTo = [&](double end) { return std::uniform_real_distribution(0.0, end)(random); };
  for (int round = 0; round < 3000; ++round) {
    const Rect area{upTo(4000) - 2000, upTo(2000) - 1000, 1 + upTo(4000), 1 + upTo(2000)};
    // Edges anywhere, and edges exactly on sample points, where one unit in the last place decides.
    const auto edge = [&](double start, double length, int cells) {
      return round % 2 == 0
                 ? start - 100 + upTo(length + 200)
                 : start + (static_cast<double>(random() % static_cast<unsigned>(cells)) + 0.5) * length / cells;
    };
    std::vector<Rect> windows(random() % 12);
    for (Rect& window : windows) {
      const auto [left, right] = std::minmax({edge(area.x, area.width, 48), edge(area.x, area.width, 48)});
      const auto [top, bottom] = std::minmax({edge(area.y, area.height, 30), edge(area.y, area.height, 30)});
      window = {left, top, right - left, bottom - top};
    }
    ASSERT_EQ(coverage(screenWithoutPanels(area), windows), coverageByDefinition(area, windows)) << "round " << round;
  }
}

TEST(Coverage, OnlyVisibleOrdinaryWindowsOfOthersCount) {
  constexpr Rect place{10, 20, 300, 200};
  struct Case {
    const char* what;
    WindowDescription window;
    bool counts;
  };
  for (const auto& [what, window, counts] :
       std::initializer_list<Case>{{"ordinary", {0, 1, 1.0, place}, true},
                                   {"no owner, no alpha", {0, {}, {}, place}, true},
                                   {"just visible", {0, 1, 0.06, place}, true},
                                   {"just invisible", {0, 1, 0.05, place}, false},
                                   {"the program's own", {0, 77, 1.0, place}, false},
                                   {"a panel", {1, 1, 1.0, place}, false},
                                   {"below the ordinary ones", {-1, 1, 1.0, place}, false},
                                   {"no layer", {{}, 1, 1.0, place}, false},
                                   {"nowhere", {0, 1, 1.0, {}}, false},
                                   {"just too narrow", {0, 1, 1.0, Rect{0, 0, 40, 200}}, false},
                                   {"just too low", {0, 1, 1.0, Rect{0, 0, 200, 40}}, false},
                                   {"small", {0, 1, 1.0, Rect{0, 0, 41, 41}}, true}}) {
    FakeWindowList list;
    list.windows = {window};
    EXPECT_EQ(otherWindowRects(list, 77), counts ? std::vector{*window.bounds} : std::vector<Rect>()) << what;
  }
}

TEST(Coverage, IsReportedForEachScreen) {
  FakePlatform platform;
  const auto report = [&] {
    std::ostringstream out;
    reportCoverage(platform.screens, platform.windowList, 77, out);
    return out.str();
  };
  const Rect left{0, 0, 1920, 1080};
  const Rect halfOfTheRight{1920, 0, 640, 1024};
  platform.windowList.windows = {{0, 1, {}, left}, {0, 77, {}, halfOfTheRight}, {0, 2, {}, halfOfTheRight}};
  EXPECT_EQ(report(),
            "screen 1: 100.0% covered by 2 windows -> paused\nscreen 2: 50.0% covered by 2 windows -> playing\n");
  platform.windowList.windows.reset();
  platform.screens.screens.pop_back();
  EXPECT_EQ(report(), "screen 1: 0.0% covered by 0 windows -> playing\n");
}

}  // namespace
}  // namespace tavelle
