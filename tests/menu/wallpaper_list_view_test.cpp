#include "menu/wallpaper_list_view.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "fakes/fake_main_loop.h"
#include "platform/pending_calls.h"

namespace tavelle {
namespace {

using Lines = std::vector<std::string>;

/// A menu and all that the list does to it.
struct WallpaperList : testing::Test, MenuHost {
  void closeMenu() override {
    happened.emplace_back("closed");
    if (dropWhenClosed) list.reset();
  }
  void sizeChanged() override {
    happened.push_back("changed to " + std::to_string(std::lround(list->bounds().height)));
  }
  void needsDisplay(const Rect& area) override { shown = area; }
  void scrolled() override {}

  static std::vector<Wallpaper> library(std::size_t count) {
    std::vector<Wallpaper> all;
    for (std::size_t i = 0; i < count; ++i) all.push_back({{"/l/Wallpaper " + std::to_string(i)}});
    return all;
  }
  void make(std::size_t count, std::optional<Wallpaper> current, bool expanded) {
    const auto all = library(count);
    list = WallpaperListView::make({all, library(std::min<std::size_t>(count, 3)), std::move(current), expanded}, calls,
                                   [this](const Wallpaper& picked) { happened.push_back("chose " + picked.name()); });
    list->setHost(this);
  }
  Rect place(std::size_t row) const { return list->rows().at(row)->convert(list->rows()[row]->bounds(), *list); }
  void click(const Point& point) const {
    View* const view = list->hitTest(point);
    ASSERT_TRUE(view);
    view->mouseDown(view->convertFrom(*list, point));
    view->mouseUp(view->convertFrom(*list, point));
  }

  FakeMainLoop loop;
  PendingCalls calls{loop};
  std::shared_ptr<WallpaperListView> list;
  Lines happened;
  bool dropWhenClosed = false;
  Rect shown;
};

TEST_F(WallpaperList, LaysOutItsRows) {
  using Case = std::tuple<std::size_t, std::optional<std::size_t>, bool, double, std::string, std::optional<double>>;
  // The offset is that of the box; there may be none.
  for (const auto& [count, current, expanded, height, last, offset] :
       std::vector<Case>{{0, {}, false, 22, "No wallpapers yet", {}},
                         {3, 1, false, 66, "Wallpaper 2", {}},
                         {4, 1, false, 88, "Show All (4)", {}},
                         {8, 7, true, 198, "Show Less", {}},
                         {9, {}, true, 209, "Show Less", 0},
                         {30, 7, true, 209, "Show Less", 0},
                         {30, 8, true, 209, "Show Less", 82.5},
                         {30, 28, true, 209, "Show Less", 473}}) {
    SCOPED_TRACE(std::to_string(count) + (expanded ? " expanded" : " collapsed"));
    // The same folder, however it is written.
    make(count, current ? std::optional(Wallpaper{{"/l/./Wallpaper " + std::to_string(*current)}}) : std::nullopt,
         expanded);
    const auto rows = list->rows().size();
    EXPECT_EQ(list->frame(), (Rect{0, 0, 240, height}));
    EXPECT_EQ(list->rows().back()->title(), last);
    EXPECT_EQ(place(rows - 1), (Rect{0, height - 22, 240, 22}));
    const ScrollView* const box = list->scrollView();
    ASSERT_EQ(box ? std::optional(box->offset()) : std::nullopt, offset);
    for (std::size_t i = 0; i < rows; ++i) {
      EXPECT_EQ(list->rows()[i]->accessibility()->checked, i == current) << i;
      if (i + 1 == rows) continue;
      EXPECT_EQ(place(i), (Rect{0, static_cast<double>(i) * 22 - offset.value_or(0), 240, 22}));
    }
  }
  make(3, Wallpaper{{"/elsewhere/Wallpaper 1"}}, false);
  EXPECT_FALSE(list->rows()[1]->checked()) << "a namesake";
}

TEST_F(WallpaperList, ChoosesOnceTheMenuHasClosed) {
  make(30, library(30)[20], true);
  // The box has scrolled 346.5 points.
  const Point inRow = {100, 10};
  dropWhenClosed = true;
  click(inRow);
  EXPECT_EQ(happened, Lines{"closed"});
  EXPECT_FALSE(list);
  loop.turn(1000ms);
  EXPECT_EQ(happened, (Lines{"closed", "chose Wallpaper 16"})) << "though the list is gone";

  make(0, {}, false);
  click(inRow);
  make(3, {}, false);
  list->setHost(nullptr);
  EXPECT_TRUE(list->rows()[2]->accessibilityPerformPress());
  loop.turn(1000ms);
  EXPECT_EQ(happened, (Lines{"closed", "chose Wallpaper 16", "chose Wallpaper 2"}));
}

TEST_F(WallpaperList, TogglesInPlace) {
  make(12, {}, false);
  click({100, 70});
  EXPECT_EQ(list->rows().size(), 4) << "not inside the event";
  loop.turn(0ms);
  EXPECT_EQ(list->rows().back()->symbol(), "chevron.up");
  EXPECT_EQ(shown, list->bounds());
  list->toggle();
  loop.turn(0ms);
  list->toggle();
  list.reset();
  loop.turn(0ms);
  EXPECT_EQ(happened, (Lines{"changed to 209", "changed to 88"})) << "a list that is gone stays quiet";
}

TEST_F(WallpaperList, ScrollsFromEdgeToEdge) {
  make(30, {}, true);
  ScrollView& box = *list->scrollView();
  box.scrollBy(1000);
  EXPECT_EQ(box.scrollerKnob().maxY(), 185);
  EXPECT_EQ(list->hitTest({100, 186}), list->rows()[29]);
  EXPECT_EQ(list->hitTest({100, 188}), list->rows()[30]) << "rows out of the box take no clicks";
  list->scrollToVisible(*list->rows()[3]);
  EXPECT_EQ(place(3).y, 0);
  list->scrollToVisible(*list->rows()[12]);
  EXPECT_EQ(place(12).maxY(), 187);

  const Rect knob = box.scrollerKnob();
  const Point grip{knob.x + 1, knob.y + 5};
  EXPECT_NE(dynamic_cast<MenuRow*>(list->hitTest(grip)), nullptr) << "a bar that nobody sees is in nobody's way";
  box.setScrollerOpacity(0.5);
  View* const scroller = list->hitTest(grip);
  scroller->mouseDown(scroller->convertFrom(*list, grip));
  scroller->mouseDragged(scroller->convertFrom(*list, {grip.x - 90, -50}));
  EXPECT_EQ(box.offset(), 0);
  scroller->mouseDragged(scroller->convertFrom(*list, {grip.x, 7 + (183 - knob.height) / 2}));
  EXPECT_NEAR(box.offset(), 473 / 2.0, 0.01) << "the knob follows the pointer";
}

}  // namespace
}  // namespace tavelle
