#pragma once

#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/toolkit/work_areas.h"
#include "platform/linux/x11/x_connection.h"

namespace tavelle {

/// What the window manager says that panels leave of each monitor, and else the panels themselves (EWMH 1.5, struts).
class PanelAreas final : public WorkAreas {
 public:
  PanelAreas(const XConnection& connection, const Monitors& monitors);

  std::vector<Rect> of(const std::vector<GdkMonitor*>& monitors) const override;

 private:
  std::vector<Rect> askPanels(const std::vector<GdkMonitor*>& monitors) const;

  const XConnection& connection_;
  const Monitors& monitors_;
  const std::vector<xcb_atom_t> atoms_;
};

}  // namespace tavelle
