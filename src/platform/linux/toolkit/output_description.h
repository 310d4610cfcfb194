#pragma once

#include <gdk/gdk.h>

#include <string>

#include "base/geometry.h"

namespace tavelle {

/// What a Wayland compositor itself tells of a monitor. What it has not told is empty.
struct OutputDescription {
  /// In the layout of all monitors, in logical pixels.
  Rect place;
  /// What the compositor calls it, which is its connector.
  std::string name;
};

/// Leaves with GDK's monitor what has been told of it, for as long as it holds; null takes it away again.
void describe(GdkMonitor* monitor, OutputDescription* description);

/// What the compositor has told of this monitor; null where nobody has it tell, as on X11. Lives until the main loop
/// goes on.
const OutputDescription* toldOf(GdkMonitor* monitor);

}  // namespace tavelle
