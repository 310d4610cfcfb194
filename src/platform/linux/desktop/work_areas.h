#pragma once

#include <gdk/gdk.h>

#include <vector>

#include "platform/geometry.h"
#include "platform/linux/desktop/x_connection.h"

namespace tavelle {

/// What panels and docks leave of each monitor. Main thread only.
class WorkAreas {
 public:
  explicit WorkAreas(const XConnection& connection);

  /// The work areas of all the monitors that there are, in the order given and in GDK's coordinates. Blocks.
  std::vector<Rect> of(const std::vector<GdkMonitor*>& monitors) const;

 private:
  std::vector<Rect> askPanels(const std::vector<GdkMonitor*>& monitors) const;

  const XConnection& connection_;
  const std::vector<xcb_atom_t> atoms_;
};

Rect rectOf(const GdkRectangle& rectangle);

}  // namespace tavelle
