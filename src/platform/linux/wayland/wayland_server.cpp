#include "platform/linux/wayland/wayland_server.h"

#include <gdk/gdkwayland.h>

#include "platform/linux/wayland/wayland_globals.h"

namespace tavelle {

WaylandServer::WaylandServer()
    : outputs_(WaylandGlobals(gdk_wayland_display_get_wl_display(gdk_display_get_default())),
               gdk_display_get_default()),
      workAreas_(waylandWorkAreas(gdk_display_get_default())) {}

Registration WaylandServer::onWindowEvent(std::function<void()> happened) {
  return told().onChange(std::move(happened));
}

WaylandWindows& WaylandServer::told() {
  if (!told_) told_ = waylandWindows(gdk_display_get_default());
  return *told_;
}

}  // namespace tavelle
