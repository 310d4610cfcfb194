#pragma once

#include <gdk/gdk.h>

#include <optional>

#include "platform/linux/desktop/work_areas.h"
#include "platform/screens.h"

namespace tavelle {

/// GDK's monitors, with the work areas that the window manager or the panels tell.
class GdkScreens final : public Screens {
 public:
  explicit GdkScreens(const XConnection& connection) : workAreas_(connection) {}

  std::vector<Screen> list() const override;
  Registration onChange(std::function<void()> changed) override;

 private:
  WorkAreas workAreas_;
};

/// GDK's own number of the monitor at the screen's place, by which some desktops know it; none when there is no monitor
/// there any more.
std::optional<int> monitorNumber(const Screen& screen);

/// The smallest rectangle round all monitors, in global display space; empty when there are none.
Rect extentOfMonitors();

/// How the pixels of the X server's picture, counted from its top-left corner, lie in global display space.
struct PixelSpace {
  /// As things are now.
  static PixelSpace current();

  Rect toPixels(const Rect& global) const;
  Rect toGlobal(const Rect& pixels) const;

  /// The main screen's top-left corner, in GDK's coordinates.
  double originX;
  double originY;
  /// Pixels in a logical pixel.
  double scale;
};

}  // namespace tavelle
