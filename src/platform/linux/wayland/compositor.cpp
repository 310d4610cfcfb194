#include "platform/linux/wayland/compositor.h"

#include <wayland-client.h>

#include <utility>

#include "platform/linux/sway/sway_connection.h"
#include "platform/linux/sway/sway_events.h"
#include "platform/linux/sway/sway_tree.h"
#include "platform/linux/toolkit/change_calls.h"
#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/toolkit/window_manager.h"
#include "platform/linux/wayland/told_windows.h"
#include "platform/linux/wayland/wayland_globals.h"

namespace tavelle {
namespace {

/// Asks sway anew each time. While it doesn't answer there is no list of windows, and work areas are whole monitors.
class SwayCompositor final : public WindowManager {
 public:
  SwayCompositor(SwayClient client, const Monitors& monitors) : client_(std::move(client)), monitors_(monitors) {}

  std::optional<std::vector<WindowDescription>> onScreen() const override {
    const auto tree = client_.ask(SwayRequest::tree);
    auto windows = tree ? windowsInSwayTree(*tree) : std::nullopt;
    // The layout's coordinates are GDK's, too.
    if (windows) monitors_.moveToGlobal(*windows);
    return windows;
  }

  std::vector<Rect> workAreas(const std::vector<GdkMonitor*>& monitors) const override {
    const auto workspaces = shownSwayWorkspaces(client_.ask(SwayRequest::workspaces).value_or(""));
    auto areas = monitors_.placesOf(monitors);
    for (Rect& area : areas) area = areaWithoutPanels(area, workspaces);
    return areas;
  }

  Registration onWindowEvent(std::function<void()> happened) override {
    return Registration([events = std::make_shared<SwayEvents>(client_.socket(), std::move(happened))] {});
  }

 private:
  mutable SwayClient client_;
  const Monitors& monitors_;
};

/// Null when the compositor behind the display isn't sway, or doesn't answer.
std::unique_ptr<WindowManager> swayBehind(wl_display* display, const Monitors& monitors) {
  // The environment alone doesn't tell: a compositor that runs in a window of another one inherits it.
  const char* const socket = g_getenv("SWAYSOCK");
  if (!socket) return nullptr;
  SwayClient client(socket);
  const auto server = client.server();
  if (!server || server != processBehind(wl_display_get_fd(display)) || !client.ask(SwayRequest::workspaces)) {
    return nullptr;
  }
  return std::make_unique<SwayCompositor>(std::move(client), monitors);
}

class NoWindows final : public WindowList {
 public:
  std::optional<std::vector<WindowDescription>> onScreen() const override { return std::nullopt; }
};

/// Tells of each window that comes, changes or goes to those who listen, which not every process wants to: so it is
/// listened to from the first time that somebody asks for windows. Where panels are it doesn't tell.
class TellingCompositor final : public WindowManager {
 public:
  TellingCompositor(const WaylandGlobals& globals, const Monitors& monitors) : globals_(globals), monitors_(monitors) {}

  std::optional<std::vector<WindowDescription>> onScreen() const override { return windows().onScreen(); }

  std::vector<Rect> workAreas(const std::vector<GdkMonitor*>& monitors) const override {
    return monitors_.placesOf(monitors);
  }

  Registration onWindowEvent(std::function<void()> happened) override {
    windows();
    return changes_.add(std::move(happened));
  }

 private:
  const WindowList& windows() const {
    if (!windows_) windows_ = plasmaWindows(globals_, monitors_, changes_);
    if (!windows_) windows_ = foreignToplevels(globals_, monitors_, changes_);
    if (!windows_) windows_ = std::make_unique<NoWindows>();
    return *windows_;
  }

  const WaylandGlobals& globals_;
  const Monitors& monitors_;
  mutable ChangeCalls changes_;
  mutable std::unique_ptr<WindowList> windows_;
};

}  // namespace

std::unique_ptr<WindowManager> findCompositor(const WaylandGlobals& globals, const Monitors& monitors) {
  if (auto sway = swayBehind(globals.display(), monitors)) return sway;
  return std::make_unique<TellingCompositor>(globals, monitors);
}

}  // namespace tavelle
