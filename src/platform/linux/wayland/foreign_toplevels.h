#pragma once

#include <gdk/gdk.h>
#include <wlr-foreign-toplevel-management-unstable-v1-client-protocol.h>

#include <memory>
#include <vector>

#include "platform/linux/toolkit/change_calls.h"
#include "platform/linux/wayland/wayland_globals.h"
#include "platform/linux/wayland/wayland_windows.h"

namespace tavelle {

/// The maximised and full-screen windows that a compositor tells of by wlr-foreign-toplevel-management. Where other
/// windows are, and on which workspace any is, it doesn't tell: a maximised window of a workspace that is not shown is
/// in the list where the compositor doesn't take it off its output.
class ForeignToplevels final : public WaylandWindows {
 public:
  /// Null when the compositor doesn't offer it. Waits for what it has to tell. Both are of the same connection.
  static std::unique_ptr<ForeignToplevels> bind(const WaylandGlobals& globals, const Monitors& monitors);

  ForeignToplevels(zwlr_foreign_toplevel_manager_v1* manager, const Monitors& monitors);
  ForeignToplevels(const ForeignToplevels&) = delete;
  ForeignToplevels& operator=(const ForeignToplevels&) = delete;
  ~ForeignToplevels() override;

  std::optional<std::vector<WindowDescription>> onScreen() const override;
  Registration onChange(std::function<void()> changed) override { return calls_.add(std::move(changed)); }

 private:
  class Toplevel;

  static void told(void* self, zwlr_foreign_toplevel_manager_v1* manager, zwlr_foreign_toplevel_handle_v1* handle);
  static void finished(void* self, zwlr_foreign_toplevel_manager_v1* manager);
  static void outputRemoved(GdkDisplay* display, GdkMonitor* monitor, ForeignToplevels* self);

  WlPtr<zwlr_foreign_toplevel_manager_v1> manager_;
  const Monitors& monitors_;
  std::vector<std::unique_ptr<Toplevel>> toplevels_;
  ChangeCalls calls_;
};

}  // namespace tavelle
