#include "platform/linux/x11/icon_mask.h"

#include <gtest/gtest.h>

#include <string>

namespace tavelle {
namespace {

constexpr int side = 8;

/// Compares an area of a desktop whose rows these are: a dot is the picture's pixel.
bool look(IconMask& mask, const std::vector<std::string>& rows, const Rect& area = {0, 0, side, side}) {
  std::vector<std::uint32_t> shown;
  for (double y = area.y; y < area.maxY(); ++y) {
    for (double x = area.x; x < area.maxX(); ++x) {
      const char pixel = rows.at(static_cast<std::size_t>(y)).at(static_cast<std::size_t>(x));
      // As the picture is drawn again: nearly the same, with something in the byte that means nothing.
      shown.push_back(pixel == '.' ? 0xFF402006U : pixel == '-' ? 0x00402009U : 0x00E0E0E0U);
    }
  }
  return mask.compare(area, shown, std::vector<std::uint32_t>(shown.size(), 0x00402003U));
}

const std::vector<std::string> icon{"........", ".##.....", ".##..#..", "........",
                                    "........", "........", "---#----", "........"};

TEST(IconMask, LeavesOutWhatIsNotThePicture) {
  IconMask mask(side, side);
  EXPECT_FALSE(look(mask, std::vector<std::string>(side, "........")));
  EXPECT_EQ(mask.around({0, 0, side, side}), std::vector{(Rect{0, 0, side, side})}) << "no icons";
  EXPECT_TRUE(look(mask, icon));
  EXPECT_FALSE(look(mask, icon));
  EXPECT_EQ(mask.share(), 6.0 / 64);
  EXPECT_EQ(mask.around({0, 0, side, side}), (std::vector<Rect>{{0, 0, 8, 1},
                                                                {0, 1, 1, 1},
                                                                {3, 1, 5, 1},
                                                                {0, 2, 1, 1},
                                                                {3, 2, 2, 1},
                                                                {6, 2, 2, 1},
                                                                {0, 3, 8, 3},
                                                                {0, 6, 3, 1},
                                                                {4, 6, 4, 1},
                                                                {0, 7, 8, 1}}));
  EXPECT_EQ(mask.around({2, 1, 20, 2}), (std::vector<Rect>{{1, 0, 19, 1}, {1, 1, 2, 1}, {4, 1, 16, 1}}))
      << "a wallpaper that begins there and reaches beyond";
  EXPECT_TRUE(look(mask, std::vector<std::string>(side, "........"), {2, 0, 6, 5})) << "the right part goes";
  EXPECT_EQ(mask.around({0, 0, side, 4}), (std::vector<Rect>{{0, 0, 8, 1}, {0, 1, 1, 2}, {2, 1, 6, 2}, {0, 3, 8, 1}}));
}

TEST(IconMask, TakesIconsWithoutNumberTogether) {
  constexpr int wide = 400;
  IconMask mask(wide, wide);
  std::vector<std::uint32_t> shown;
  for (int i = 0; i < wide * wide; ++i) shown.push_back((i + i / wide) % 3 == 0 ? 0xFFFFFFU : 0U);
  EXPECT_TRUE(mask.compare({0, 0, wide, wide}, shown, std::vector<std::uint32_t>(shown.size())));
  EXPECT_LT(mask.around({0, 0, wide, wide}).size(), 10000U);
}

}  // namespace
}  // namespace tavelle
