// Making and drawing the wallpaper list of a large library, beside the least that each asks for: a title for every
// wallpaper, and the same lines of text drawn by Pango alone.

#include <benchmark/benchmark.h>
#include <pango/pangocairo.h>

#include <string>

#include "fakes/fake_main_loop.h"
#include "menu/wallpaper_list_view.h"
#include "platform/linux/drawing/cairo_canvas.h"
#include "platform/pending_calls.h"

namespace tavelle {
namespace {

const MenuTheme theme{{"Inter", 13}, {0.1, 0.43, 0.88}, {1, 1, 1}, {0, 0, 0, 0.85}, {0, 0, 0, 0.56}};

struct ExpandedList {
  explicit ExpandedList(std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i) {
      all.push_back({{"/home/somebody/Pictures/Wallpapers/Sample Wallpaper " + std::to_string(i)}});
    }
    list = WallpaperListView::make({all, {}, all.back(), true}, calls, [](const Wallpaper&) {});
  }
  std::vector<Wallpaper> all;
  FakeMainLoop loop;
  PendingCalls calls{loop};
  std::shared_ptr<WallpaperListView> list;
};

void makeAllRows(benchmark::State& state) {
  const ExpandedList expanded(state.range(0));
  for (auto _ : state) expanded.list->rebuild();
}

void makeAllTitles(benchmark::State& state) {
  const ExpandedList expanded(state.range(0));
  for (auto _ : state) {
    std::vector<std::string> titles;
    for (const Wallpaper& each : expanded.all) titles.push_back(each.name());
    benchmark::DoNotOptimize(titles);
  }
}

void drawList(benchmark::State& state) {
  const ExpandedList expanded(state.range(0));
  const auto bitmap = CairoBitmaps().make(240, 209, 1);
  for (auto _ : state) expanded.list->render(bitmap->canvas(), theme, expanded.list->bounds());
}

void drawTheSameTextWithPango(benchmark::State& state) {
  const CairoSurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 240, 209));
  const CairoPtr context(cairo_create(surface.get()));
  const auto layout = adopt(pango_cairo_create_layout(context.get()));
  const PangoFontDescriptionPtr font(pango_font_description_from_string("Inter 13px"));
  pango_layout_set_font_description(layout.get(), font.get());
  for (auto _ : state) {
    for (int line = 0; line < 10; ++line) {
      pango_layout_set_text(layout.get(), ("Sample Wallpaper " + std::to_string(4990 + line)).c_str(), -1);
      cairo_move_to(context.get(), 26, 22 * line);
      pango_cairo_show_layout(context.get(), layout.get());
    }
  }
}

BENCHMARK(makeAllRows)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(makeAllTitles)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(drawList)->Arg(12)->Arg(5000)->Unit(benchmark::kMicrosecond);
BENCHMARK(drawTheSameTextWithPango)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tavelle
