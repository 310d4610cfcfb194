#pragma once

#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/x11/x_connection.h"

namespace tavelle {

/// What panels leave of each monitor: as the window manager says, and else the panels themselves (EWMH 1.5, struts).
class PanelAreas {
 public:
  PanelAreas(const XConnection& connection, const Monitors& monitors);

  /// As a window manager's `workAreas`.
  std::vector<Rect> of(const std::vector<GdkMonitor*>& monitors) const;

 private:
  std::vector<Rect> askPanels(const std::vector<GdkMonitor*>& monitors) const;

  const XConnection& connection_;
  const Monitors& monitors_;
  const std::vector<xcb_atom_t> atoms_;
};

}  // namespace tavelle
