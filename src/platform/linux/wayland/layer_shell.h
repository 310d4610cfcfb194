#pragma once

namespace tavelle {

/// Whether the environment names a Wayland compositor that can put layers on the screen (wlr-layer-shell). Connects to
/// it for the question, and waits for its answer a second at most. Main thread only.
bool compositorHasLayers();

}  // namespace tavelle
