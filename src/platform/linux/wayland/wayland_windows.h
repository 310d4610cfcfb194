#pragma once

#include <gdk/gdk.h>

#include <functional>
#include <memory>

#include "base/registration.h"
#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/toolkit/work_areas.h"
#include "platform/window_list.h"

namespace tavelle {

/// The windows of a Wayland desktop, as far as its compositor tells. Main thread only.
class WaylandWindows : public WindowList {
 public:
  /// Calls `changed` on the main loop after windows may have come, gone, moved or changed their state, once for all
  /// that comes in together. Not every move is told.
  virtual Registration onChange(std::function<void()> changed) = 0;
};

/// Where the windows of the display of `monitors`, a Wayland one, are asked for, best first: sway's
/// socket, which tells where each window is; Plasma's window management, which does so too, but not where panels are;
/// the protocol that many compositors have (wlr-foreign-toplevel-management), which tells only that a window is
/// maximised or full-screen and on which output. Where there is none of them the list is never there. Waits for the
/// compositor's answers, a second each at most, so that the list is complete from the start.
std::unique_ptr<WaylandWindows> waylandWindows(const Monitors& monitors);

/// What panels leave of the monitors, where the compositor tells, which is sway; elsewhere the whole
/// monitors. Asked anew each time, with a wait of a quarter of a second at most.
std::unique_ptr<WorkAreas> waylandWorkAreas(const Monitors& monitors);

}  // namespace tavelle
