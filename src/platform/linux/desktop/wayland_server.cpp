#include "platform/linux/desktop/wayland_server.h"

namespace tavelle {

WaylandServer::WaylandServer() : workAreas_(waylandWorkAreas(gdk_display_get_default())) {}

Registration WaylandServer::onWindowEvent(std::function<void()> happened) {
  return windows().onChange(std::move(happened));
}

WaylandWindows& WaylandServer::windows() {
  if (!windows_) windows_ = waylandWindows(gdk_display_get_default());
  return *windows_;
}

}  // namespace tavelle
