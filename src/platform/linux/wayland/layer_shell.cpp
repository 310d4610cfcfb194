#include "platform/linux/wayland/layer_shell.h"

#include <wayland-client.h>

#include <cstdlib>
#include <memory>

#include "platform/linux/handles.h"
#include "platform/linux/wayland/wayland_globals.h"

namespace tavelle {

bool compositorHasLayers() {
  const char* const name = std::getenv("WAYLAND_DISPLAY");
  if (!name || !*name) return false;
  const std::unique_ptr<wl_display, FreeWith<wl_display_disconnect>> display(wl_display_connect(name));
  return display && WaylandGlobals(display.get()).offers("zwlr_layer_shell_v1");
}

}  // namespace tavelle
