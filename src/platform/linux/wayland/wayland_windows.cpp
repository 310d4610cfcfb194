#include "platform/linux/wayland/wayland_windows.h"

#include <gdk/gdkwayland.h>
#include <wayland-client.h>

#include "platform/linux/wayland/foreign_toplevels.h"
#include "platform/linux/wayland/plasma_windows.h"
#include "platform/linux/wayland/sway_windows.h"
#include "platform/linux/wayland/wayland_globals.h"

namespace tavelle {
namespace {

class NoWindows final : public WaylandWindows {
 public:
  std::optional<std::vector<WindowDescription>> onScreen() const override { return std::nullopt; }
  Registration onChange(std::function<void()> /*changed*/) override { return {}; }
};

class WholeMonitors final : public WorkAreas {
 public:
  explicit WholeMonitors(const Monitors& monitors) : monitors_(monitors) {}

  std::vector<Rect> of(const std::vector<GdkMonitor*>& monitors) const override { return monitors_.placesOf(monitors); }

 private:
  const Monitors& monitors_;
};

/// Where the compositor behind the display answers questions about itself; none when it isn't sway. The environment
/// alone doesn't tell: a compositor that runs in a window of another one inherits it.
std::optional<std::filesystem::path> swaySocketOf(wl_display* display) {
  const char* const path = g_getenv("SWAYSOCK");
  if (!path) return std::nullopt;
  SwayClient client(path);
  const auto server = client.server();
  if (!server || server != processBehind(wl_display_get_fd(display)) || !client.ask(SwayRequest::workspaces)) {
    return std::nullopt;
  }
  return path;
}

}  // namespace

std::unique_ptr<WaylandWindows> waylandWindows(const Monitors& monitors) {
  wl_display* const connection = gdk_wayland_display_get_wl_display(monitors.display());
  if (const auto socket = swaySocketOf(connection)) return std::make_unique<SwayWindows>(*socket, monitors);
  const WaylandGlobals globals(connection);
  if (auto windows = PlasmaWindows::bind(globals, monitors)) return windows;
  if (auto windows = ForeignToplevels::bind(globals, monitors)) return windows;
  return std::make_unique<NoWindows>();
}

std::unique_ptr<WorkAreas> waylandWorkAreas(const Monitors& monitors) {
  if (const auto socket = swaySocketOf(gdk_wayland_display_get_wl_display(monitors.display()))) {
    return std::make_unique<SwayWorkAreas>(*socket, monitors);
  }
  return std::make_unique<WholeMonitors>(monitors);
}

}  // namespace tavelle
