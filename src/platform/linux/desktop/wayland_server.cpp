#include "platform/linux/desktop/wayland_server.h"

namespace tavelle {

std::vector<Rect> WaylandServer::WholeMonitors::of(const std::vector<GdkMonitor*>& monitors) const {
  std::vector<Rect> areas;
  for (GdkMonitor* monitor : monitors) {
    GdkRectangle place;
    gdk_monitor_get_geometry(monitor, &place);
    areas.push_back(rectOf(place));
  }
  return areas;
}

Registration WaylandServer::onWindowEvent(std::function<void()> /*happened*/) { return {}; }

}  // namespace tavelle
