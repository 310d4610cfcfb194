#include "menu/menu_preview.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "library/listing.h"
#include "menu/menu_row.h"
#include "menu/wallpaper_list_view.h"
#include "model/controller.h"
#include "platform/canvas.h"
#include "platform/files.h"
#include "platform/pending_calls.h"
#include "platform/platform.h"
#include "platform/text_order.h"

namespace tavelle {
namespace {

constexpr double previewWidth = 240;
constexpr double pixelsPerPoint = 1;

struct Appearance {
  std::string_view label;
  /// Behind the list, as bright as a menu of that appearance.
  double grey;
  MenuTheme theme;
};

/// The desktop's own look cannot be asked for without a display, so the preview has one of its own. Inter is drawn for
/// interfaces, stays legible at a pixel a point, and runs narrow enough for names; the others are what desktops take
/// in its place. The colours keep a contrast of 4.5 and more (WCAG 2.1, AA) between each text and what it stands on.
std::array<Appearance, 2> appearances() {
  const TextFont font{.family = "Inter, Cantarell, Noto Sans, DejaVu Sans", .size = 13};
  const Color white{1, 1, 1};
  const Color accent{0.10, 0.43, 0.88};
  return {{{.label = "light",
            .grey = 0.96,
            .theme = {.font = font,
                      .accent = accent,
                      .selectedText = white,
                      .label = {0, 0, 0, 0.85},
                      .secondaryLabel = {0, 0, 0, 0.56}}},
           {.label = "dark",
            .grey = 0.17,
            .theme = {.font = font,
                      .accent = accent,
                      .selectedText = white,
                      .label = {1, 1, 1, 0.86},
                      .secondaryLabel = {1, 1, 1, 0.56}}}}};
}

/// `all` with so many made-up wallpapers of the folder `library` among them, in the order in which a file browser shows
/// names. The folders are not made.
std::vector<Wallpaper> withSamples(std::vector<Wallpaper> all, std::size_t count, const std::filesystem::path& library,
                                   const TextOrder& order) {
  for (std::size_t number = 1; number <= count; ++number) {
    all.push_back({{library / ("Sample Wallpaper " + std::to_string(number))}});
  }
  return sortedByName(std::move(all), order);
}

/// Puts the pointer over the second row that does not scroll, to show how a row looks then.
void hoverSample(const WallpaperListView& list) {
  std::vector<MenuRow*> rows;
  for (MenuRow* const row : list.rows()) {
    if (row->superview() == &list) rows.push_back(row);
  }
  if (rows.size() >= 2) rows[1]->setHovered(true);
}

/// The list over the grey, as a PNG file; none when there is no picture to draw on.
std::optional<Result<std::string>> drawn(const WallpaperListView& list, const Appearance& appearance,
                                         Bitmaps& bitmaps) {
  const Rect bounds = list.bounds();
  const auto bitmap = bitmaps.make(bounds.width, bounds.height, pixelsPerPoint);
  if (!bitmap) return std::nullopt;
  const double grey = appearance.grey;
  bitmap->canvas().fillRoundedRect(bounds, 0, {grey, grey, grey});
  list.render(bitmap->canvas(), appearance.theme, bounds);
  return bitmap->png();
}

}  // namespace

std::size_t sampleCount(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  std::int64_t count = 0;
  const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), count);
  const bool whole = code == std::errc() && end == text.data() + text.size();
  return whole && count > 0 ? static_cast<std::size_t>(count) : 0;
}

void previewMenu(Controller& controller, const Platform& platform, Bitmaps& bitmaps,
                 const std::filesystem::path& folder, std::size_t samples, std::ostream& out) {
  const auto all = withSamples(controller.wallpapers(), samples, controller.library(), platform.textOrder);
  controller.takeStoredOrFirst(all);
  const auto quick = controller.quickList(all);
  PendingCalls calls(platform.mainLoop);
  for (const Appearance& appearance : appearances()) {
    for (const bool expanded : {false, true}) {
      const auto list = WallpaperListView::make({all, quick, controller.current(), expanded, previewWidth}, calls,
                                                [](const Wallpaper&) {});
      hoverSample(*list);
      const auto png = drawn(*list, appearance, bitmaps);
      if (!png) continue;
      const std::string name =
          "menu-" + std::string(appearance.label) + (expanded ? "-expanded" : "-collapsed") + ".png";
      // The line tells what was drawn; whoever asked for the files sees which are there.
      if (*png) static_cast<void>(platform.files.write(folder / name, **png, Files::Readers::asUsual));
      const auto whole = [](double points) { return static_cast<int>(points); };
      out << "wrote " << name << ' ' << whole(list->bounds().width) << 'x' << whole(list->bounds().height) << '\n';
    }
  }
}

}  // namespace tavelle
