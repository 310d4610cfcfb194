#pragma once

#include <plasma-virtual-desktop-client-protocol.h>
#include <plasma-window-management-client-protocol.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/toolkit/change_calls.h"
#include "platform/linux/wayland/wayland_globals.h"
#include "platform/linux/wayland/wayland_windows.h"

namespace tavelle {

/// The windows that Plasma's compositor tells of, to programs whose desktop entry asks for it by
/// X-KDE-Wayland-Interfaces. It tells where windows are, and on which virtual desktops, but not which of them are on
/// an activity that is not shown.
class PlasmaWindows final : public WaylandWindows {
 public:
  /// Null when the compositor doesn't offer it, to this program. Waits for what it has to tell.
  static std::unique_ptr<PlasmaWindows> bind(const WaylandGlobals& globals, const Monitors& monitors);

  /// Takes over both; `desktops` may be null, and then windows of all virtual desktops count.
  PlasmaWindows(org_kde_plasma_window_management* management, org_kde_plasma_virtual_desktop_management* desktops,
                const Monitors& monitors);
  PlasmaWindows(const PlasmaWindows&) = delete;
  PlasmaWindows& operator=(const PlasmaWindows&) = delete;
  ~PlasmaWindows() override;

  std::optional<std::vector<WindowDescription>> onScreen() const override;
  Registration onChange(std::function<void()> changed) override { return calls_.add(std::move(changed)); }

 private:
  class Window;
  class Desktop;
  using Management = org_kde_plasma_window_management;
  using DesktopManagement = org_kde_plasma_virtual_desktop_management;

  static void showingDesktop(void* self, Management* management, std::uint32_t state);
  static void toldByNumber(void* self, Management* management, std::uint32_t number);
  static void toldByName(void* self, Management* management, std::uint32_t number, const char* uuid);
  static void desktopCreated(void* self, DesktopManagement* management, const char* id, std::uint32_t position);
  static void desktopRemoved(void* self, DesktopManagement* management, const char* id);

  void add(org_kde_plasma_window* handle);
  bool isOnShownDesktop(const Window& window) const;

  const Monitors& monitors_;
  const WlPtr<Management> management_;
  const WlPtr<DesktopManagement> desktopManagement_;
  bool showsDesktop_ = false;
  std::vector<std::unique_ptr<Window>> windows_;
  std::map<std::string, std::unique_ptr<Desktop>, std::less<>> desktops_;
  ChangeCalls calls_;
};

}  // namespace tavelle
