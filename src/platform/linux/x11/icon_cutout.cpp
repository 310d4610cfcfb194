#include "platform/linux/x11/icon_cutout.h"

#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/shape.h>

#include <algorithm>
#include <cmath>

namespace tavelle {
namespace {

/// More of a desktop than that is no icons: the picture is another one, or about to become one.
constexpr double mostIcons = 0.5;
/// Areas of change that are told one by one; more than that, and all of what lies between them is looked at.
constexpr std::size_t mostAreas = 32;

/// An area in horizontal strips that can be read at once.
std::vector<Rect> strips(const Rect& area) {
  const double most = std::max(1.0, std::floor(static_cast<double>(ScreenImages::mostPixels) / area.width));
  std::vector<Rect> found;
  Rect rest = area;
  while (!rest.isEmpty()) {
    const double height = std::min(most, rest.height);
    found.push_back({rest.x, rest.y, rest.width, height});
    rest = {rest.x, rest.y + height, rest.width, rest.height - height};
  }
  return found;
}

}  // namespace

IconCutout::IconCutout(const XConnection& connection, ScreenImages& images, xcb_window_t window, const Rect& place)
    : connection_(connection),
      images_(images),
      window_(window),
      place_(place),
      damage_(xcb_generate_id(connection.get())),
      icons_(static_cast<int>(place.width), static_cast<int>(place.height)) {
  // Kept in full behind the wallpapers, also where nobody composes the screen.
  xcb_composite_redirect_window(connection.get(), window, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
  xcb_damage_create(connection.get(), damage_, window, XCB_DAMAGE_REPORT_LEVEL_DELTA_RECTANGLES);
  allHasChanged();
}

IconCutout::~IconCutout() {
  // Of a window that has gone the server refuses this, and nobody hears of it.
  xcb_damage_destroy(connection_.get(), damage_);
  xcb_composite_unredirect_window(connection_.get(), window_, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
}

void IconCutout::hasChanged(const Rect& area) {
  areas_.push_back(area);
  if (areas_.size() <= mostAreas) return;
  Rect all = areas_.front();
  for (const Rect& each : areas_) all = around(all, each);
  areas_ = {all};
}

void IconCutout::allHasChanged() { areas_ = {{0, 0, place_.width, place_.height}}; }

bool IconCutout::look(std::optional<xcb_pixmap_t> picture) {
  if (areas_.empty()) return false;
  // Before the look: what changes from here on is told again.
  xcb_damage_subtract(connection_.get(), damage_, XCB_NONE, XCB_NONE);
  const bool wasKnown = isKnown();
  bool changed = false;
  isCompared_ = picture.has_value();
  for (const Rect& area : areas_) {
    for (const Rect& strip : strips(intersection(area, {0, 0, place_.width, place_.height}))) {
      const auto different = isCompared_ ? compare(strip, *picture) : std::nullopt;
      isCompared_ = different.has_value();
      changed = changed || different.value_or(false);
    }
  }
  if (isCompared_) areas_.clear();
  return changed || isKnown() != wasKnown;
}

/// Whether anything is different from what was seen there before; none when it can't be told.
std::optional<bool> IconCutout::compare(const Rect& strip, xcb_pixmap_t picture) {
  const auto shown = images_.read(0, window_, strip);
  const auto plain = images_.readTiled(1, picture, {place_.x + strip.x, place_.y + strip.y, strip.width, strip.height});
  if (!shown || !plain) return std::nullopt;
  return icons_.compare(strip, *shown, *plain);
}

bool IconCutout::isKnown() const { return isCompared_ && icons_.share() < mostIcons; }

void IconCutout::cutFrom(xcb_window_t wallpaper, const Rect& wallpaperPlace) const {
  std::vector<xcb_rectangle_t> rectangles;
  for (const Rect& each : icons_.around(
           {wallpaperPlace.x - place_.x, wallpaperPlace.y - place_.y, wallpaperPlace.width, wallpaperPlace.height})) {
    rectangles.push_back({static_cast<std::int16_t>(each.x), static_cast<std::int16_t>(each.y),
                          static_cast<std::uint16_t>(each.width), static_cast<std::uint16_t>(each.height)});
  }
  xcb_shape_rectangles(connection_.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_YX_BANDED,
                       wallpaper, 0, 0, static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

}  // namespace tavelle
