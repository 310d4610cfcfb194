#pragma once

#include <gdk/gdk.h>

#include <map>
#include <memory>

#include "platform/linux/wayland/wayland_globals.h"

namespace tavelle {

/// Has the compositor tell of the monitors of GDK's beside what it tells GDK (xdg-output). GDK 3.24 moves a monitor to
/// the layout's origin when its description is told again, as it is by sway after a change of its configuration; and it
/// does not ask for the name. Main thread only.
class WaylandOutputs {
 public:
  /// Waits for what the compositor has to tell of the monitors that there are, a second at most. Both are of the same
  /// connection; the display outlives this.
  WaylandOutputs(const WaylandGlobals& globals, GdkDisplay* display);
  WaylandOutputs(const WaylandOutputs&) = delete;
  WaylandOutputs& operator=(const WaylandOutputs&) = delete;
  ~WaylandOutputs();

 private:
  class Output;

  static void added(GdkDisplay* display, GdkMonitor* monitor, WaylandOutputs* self);
  static void removed(GdkDisplay* display, GdkMonitor* monitor, WaylandOutputs* self);

  GdkDisplay* const display_;
  const WlPtr<zxdg_output_manager_v1> manager_;
  std::map<GdkMonitor*, std::unique_ptr<Output>> outputs_;
};

}  // namespace tavelle
