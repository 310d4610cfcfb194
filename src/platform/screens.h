#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/geometry.h"
#include "base/registration.h"

namespace tavelle {

/// One monitor, as it was when it was listed.
struct Screen {
  /// What the desktop calls it: the name of its connector, e.g. "HDMI-1", by which desktops keep a monitor's settings.
  /// Empty when it has no name.
  std::string name;
  /// The whole monitor in screen space: origin at the bottom-left of the main screen, y grows upwards.
  Rect frame;
  /// The part of the monitor that no panel or dock takes for itself, in screen space.
  Rect visibleFrame;
  /// The whole monitor in global display space: origin at the top-left of the main screen, y grows downwards.
  Rect bounds;
};

/// The monitors. Main thread only.
class Screens {
 public:
  virtual ~Screens() = default;

  /// The monitors as they are now: the main one first, the others from left to right, and from the top down where they
  /// lie above each other. Empty when there is no display.
  virtual std::vector<Screen> list() const = 0;

  /// Calls `changed` on the main loop after anything about the monitors may have changed: number, place, size. It may
  /// come several times for one change, and for changes that alter no screen.
  virtual Registration onChange(std::function<void()> changed) = 0;
};

}  // namespace tavelle
