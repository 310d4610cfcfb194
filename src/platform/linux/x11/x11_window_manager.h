#pragma once

#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/toolkit/window_manager.h"
#include "platform/linux/x11/panel_areas.h"
#include "platform/linux/x11/x_connection.h"

namespace tavelle {

class X11SharedDesktop;

/// The window manager, as far as it keeps to EWMH 1.5. One look at the windows takes two round trips to the server,
/// whatever their number: one for the list, one for all that is asked about the windows in it.
class X11WindowManager final : public WindowManager {
 public:
  /// All must outlive this.
  X11WindowManager(const XConnection& connection, const Monitors& monitors, const X11SharedDesktop& sharedDesktop);

  std::optional<std::vector<WindowDescription>> onScreen() const override;
  std::vector<Rect> workAreas(const std::vector<GdkMonitor*>& monitors) const override { return panels_.of(monitors); }
  Registration onWindowEvent(std::function<void()> happened) override;

 private:
  class WindowRequest;
  struct Sight;

  const XConnection& connection_;
  const Monitors& monitors_;
  const X11SharedDesktop& sharedDesktop_;
  const PanelAreas panels_;
  const std::vector<xcb_atom_t> atoms_;
};

}  // namespace tavelle
