#pragma once

#include <gdk/gdk.h>

namespace tavelle {

/// Whether the environment names a Wayland compositor that can put layers on the screen (wlr-layer-shell). Connects to
/// it for the question, and waits for its answer a second at most. Main thread only.
bool compositorHasLayers();

/// Whether the toolkit's display is a Wayland compositor.
bool isLayerDisplay(GdkDisplay* display);

}  // namespace tavelle
