#include "platform/linux/wayland/wayland_server.h"

#include <gdk/gdkwayland.h>
#include <wayland-client.h>

#include <cstdlib>
#include <memory>

#include "platform/linux/handles.h"

namespace tavelle {

bool compositorHasLayers() {
  const char* const name = std::getenv("WAYLAND_DISPLAY");
  if (!name || !*name) return false;
  const std::unique_ptr<wl_display, FreeWith<wl_display_disconnect>> display(wl_display_connect(name));
  return display && WaylandGlobals(display.get()).offers("zwlr_layer_shell_v1");
}

WaylandServer::WaylandServer(GdkDisplay* display)
    : monitors_(display), globals_(gdk_wayland_display_get_wl_display(display)) {}

}  // namespace tavelle
