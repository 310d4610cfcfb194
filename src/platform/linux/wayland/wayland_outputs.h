#pragma once

#include <gdk/gdk.h>

#include <map>
#include <memory>

#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/wayland/wayland_globals.h"

namespace tavelle {

/// Asks the compositor itself where each monitor is and what it is called (xdg-output), and describes it so to the
/// `Monitors`. GDK 3.24 tells neither well: it never asks for the name, and when the compositor describes a monitor a
/// second time, as sway does after any change of its configuration, GDK takes it to be at the layout's origin. Main
/// thread only.
class WaylandOutputs {
 public:
  /// Waits for the compositor's answers about the monitors that there are, a second at most. Both are of the same
  /// connection; the monitors outlive this.
  WaylandOutputs(const WaylandGlobals& globals, Monitors& monitors);
  WaylandOutputs(const WaylandOutputs&) = delete;
  WaylandOutputs& operator=(const WaylandOutputs&) = delete;
  ~WaylandOutputs();

 private:
  class Output;

  static void added(GdkDisplay* display, GdkMonitor* monitor, WaylandOutputs* self);
  static void removed(GdkDisplay* display, GdkMonitor* monitor, WaylandOutputs* self);

  Monitors& monitors_;
  const WlPtr<zxdg_output_manager_v1> manager_;
  std::map<GdkMonitor*, std::unique_ptr<Output>> outputs_;
};

}  // namespace tavelle
