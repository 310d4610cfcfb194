#pragma once

#include <gdk/gdk.h>

#include <functional>
#include <vector>

#include "base/geometry.h"
#include "base/registration.h"
#include "platform/window_list.h"

namespace tavelle {

/// Who arranges the windows on the desktop, the X server's window manager or a Wayland compositor, and what it tells of
/// them. Main thread only.
class WindowManager : public WindowList {
 public:
  /// What panels and docks leave of these monitors, which are all that there are: in the order given and in GDK's
  /// coordinates, the whole monitor where nobody tells. May block for an answer.
  virtual std::vector<Rect> workAreas(const std::vector<GdkMonitor*>& monitors) const = 0;
  /// Calls `happened` on the main loop after something that is likely to change which windows are in sight, once for
  /// all that comes in together.
  virtual Registration onWindowEvent(std::function<void()> happened) = 0;
};

}  // namespace tavelle
