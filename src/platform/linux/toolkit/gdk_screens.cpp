#include "platform/linux/toolkit/gdk_screens.h"

#include <utility>

namespace tavelle {

std::vector<Screen> GdkScreens::list() const {
  const auto all = monitors_.all();
  const auto areas = manager_.workAreas(all);
  std::vector<Screen> screens;
  screens.reserve(all.size());
  for (std::size_t i = 0; i < all.size(); ++i) {
    const double mainHeight = monitors_.placeOf(all.front()).height;
    const auto upwards = [&](const Rect& global) {
      return Rect{global.x, mainHeight - global.maxY(), global.width, global.height};
    };
    const Rect bounds = monitors_.toGlobal(monitors_.placeOf(all[i]));
    screens.push_back({.name = monitors_.nameOf(all[i]),
                       .frame = upwards(bounds),
                       .visibleFrame = upwards(monitors_.toGlobal(areas[i])),
                       .bounds = bounds});
  }
  return screens;
}

Registration GdkScreens::onChange(std::function<void()> changed) { return monitors_.onChange(std::move(changed)); }

}  // namespace tavelle
