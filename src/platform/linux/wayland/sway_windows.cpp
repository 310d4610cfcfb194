#include "platform/linux/wayland/sway_windows.h"

#include <memory>

#include "platform/linux/sway/sway_events.h"
#include "platform/linux/sway/sway_tree.h"

namespace tavelle {

std::optional<std::vector<WindowDescription>> SwayWindows::onScreen() const {
  const auto tree = client_.ask(SwayRequest::tree);
  auto windows = tree ? windowsInSwayTree(*tree) : std::nullopt;
  // The layout's coordinates are GDK's, too.
  if (windows) monitors_.moveToGlobal(*windows);
  return windows;
}

Registration SwayWindows::onChange(std::function<void()> changed) {
  return Registration([events = std::make_shared<SwayEvents>(socket_, std::move(changed))] {});
}

std::vector<Rect> SwayWorkAreas::of(const std::vector<GdkMonitor*>& monitors) const {
  const auto workspaces = shownSwayWorkspaces(client_.ask(SwayRequest::workspaces).value_or(""));
  auto areas = monitors_.placesOf(monitors);
  for (Rect& area : areas) area = areaWithoutPanels(area, workspaces);
  return areas;
}

}  // namespace tavelle
