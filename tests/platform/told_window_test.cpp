#include "platform/linux/told_window.h"

#include <gtest/gtest.h>

namespace tavelle {
namespace {

TEST(ToldWindow, HidesWhatIsKnownOfIt) {
  const Rect left{0, 0, 1920, 1080};
  const Rect right{1920, 200, 1280, 800};
  const Rect astride{1700, 300, 600, 400};
  using Case = std::tuple<const char*, ToldWindow, std::vector<Rect>>;
  for (const auto& [what, window, hidden] : std::initializer_list<Case>{
           {"nothing but that it is there", {}, {}},
           {"on an output", {.outputs = {left}}, {}},
           {"maximised", {.maximized = true, .outputs = {right}}, {right}},
           {"full-screen on both", {.fullscreen = true, .outputs = {left, right}}, {left, right}},
           {"minimised from maximised", {.minimized = true, .maximized = true, .outputs = {left}}, {}},
           {"a frame", {.frame = astride}, {astride}},
           {"maximised beside a panel", {.maximized = true, .frame = Rect{1920, 240, 1280, 760}}, {right}},
           {"reaching over the edge",
            {.maximized = true, .frame = Rect{1910, 190, 1300, 820}},
            {{1910, 190, 1300, 820}}},
           {"nowhere", {.fullscreen = true, .frame = Rect{-500, 0, 100, 100}}, {{-500, 0, 100, 100}}}}) {
    std::vector<Rect> found;
    for (const auto& each : hiddenBy(window, std::vector{left, right})) found.push_back(each.bounds.value_or(Rect{}));
    EXPECT_EQ(found, hidden) << what;
  }
  EXPECT_NE(hiddenBy({.furniture = true, .frame = left}, {}).front().layer, 0);
}

}  // namespace
}  // namespace tavelle
