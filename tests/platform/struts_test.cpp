#include "platform/linux/struts.h"

#include <gtest/gtest.h>

#include <vector>

namespace tavelle {
namespace {

using enum Strut::Edge;

TEST(WorkArea, IsWhatPanelsLeaveOfTheirOwnMonitor) {
  // Side by side, the second one lower; below the first a third. All in a picture of 3200 by 2104.
  const Rect first{0, 0, 1920, 1080};
  const Rect second{1920, 200, 1280, 800};
  const Rect below{0, 1080, 1920, 1024};
  using Case = std::tuple<const char*, std::vector<Strut>, std::vector<Rect>>;
  for (const auto& [what, struts, areas] : std::initializer_list<Case>{
           {"top of the first", {{top, 30, 0, 1920}}, {{0, 30, 1920, 1050}, second, below}},
           {"top of the lowest, at an inner edge", {{top, 1110, 0, 1920}}, {first, second, {0, 1110, 1920, 994}}},
           {"left of the second, at an inner edge", {{left, 1984, 200, 1000}}, {first, {1984, 200, 1216, 800}, below}},
           {"right of the first, at an inner edge", {{right, 1380, 0, 1080}}, {{0, 0, 1820, 1080}, second, below}},
           {"bottom of the first, at an inner edge", {{bottom, 1064, 0, 1920}}, {{0, 0, 1920, 1040}, second, below}},
           {"bottom of the lowest", {{bottom, 40, 0, 1920}}, {first, second, {0, 1080, 1920, 984}}},
           {"deeper of two", {{top, 30, 0, 1920}, {top, 50, 800, 900}}, {{0, 50, 1920, 1030}, second, below}},
           {"crossing", {{left, 1200, 0, 1080}, {right, 2300, 0, 1080}}, {{1200, 0, 0, 1080}, second, below}}}) {
    for (std::size_t i = 0; i < areas.size(); ++i) {
      EXPECT_EQ(workArea(std::vector{first, second, below}[i], 3200, 2104, struts), areas[i]) << what << ", " << i;
    }
  }
}

}  // namespace
}  // namespace tavelle
