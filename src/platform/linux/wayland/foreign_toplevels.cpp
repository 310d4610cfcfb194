#include <gdk/gdkwayland.h>
#include <unistd.h>
#include <wlr-foreign-toplevel-management-unstable-v1-client-protocol.h>

#include <algorithm>
#include <set>
#include <span>
#include <vector>

#include "base/filled.h"
#include "platform/linux/told_window.h"
#include "platform/linux/toolkit/change_calls.h"
#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/wayland/told_windows.h"
#include "platform/linux/wayland/wayland_globals.h"

namespace tavelle {
namespace {

class ForeignToplevels final : public WindowList {
 public:
  ForeignToplevels(zwlr_foreign_toplevel_manager_v1* manager, const Monitors& monitors, ChangeCalls& changes);
  ForeignToplevels(const ForeignToplevels&) = delete;
  ForeignToplevels& operator=(const ForeignToplevels&) = delete;
  ~ForeignToplevels() override;

  std::optional<std::vector<WindowDescription>> onScreen() const override;

 private:
  class Toplevel;

  static void told(void* self, zwlr_foreign_toplevel_manager_v1* manager, zwlr_foreign_toplevel_handle_v1* handle);
  static void finished(void* self, zwlr_foreign_toplevel_manager_v1* manager);
  static void outputRemoved(GdkDisplay* display, GdkMonitor* monitor, ForeignToplevels* self);

  WlPtr<zwlr_foreign_toplevel_manager_v1> manager_;
  const Monitors& monitors_;
  ChangeCalls& changes_;
  std::vector<std::unique_ptr<Toplevel>> toplevels_;
};

/// One window. The compositor tells of it piece by piece, and then that what it has told belongs together.
class ForeignToplevels::Toplevel {
 public:
  Toplevel(zwlr_foreign_toplevel_handle_v1* handle, ForeignToplevels& list) : handle_(handle), list_(list) {
    static constexpr auto listener = filled<zwlr_foreign_toplevel_handle_v1_listener>([](auto& all) {
      all.title = ignoreEvent;
      all.app_id = appId;
      all.output_enter = entered;
      all.output_leave = left;
      all.state = state;
      all.done = done;
      all.closed = closed;
      all.parent = ignoreEvent;
    });
    zwlr_foreign_toplevel_handle_v1_add_listener(handle, &listener, this);
  }

  void forget(wl_output* output) {
    told_.outputs.erase(output);
    valid_.outputs.erase(output);
  }

  /// With the rectangles of its outputs by the monitors' order.
  ToldWindow tell(std::span<GdkMonitor* const> monitors, std::span<const Rect> places) const {
    ToldWindow window = valid_.window;
    for (std::size_t i = 0; i < monitors.size(); ++i) {
      if (valid_.outputs.contains(gdk_wayland_monitor_get_wl_output(monitors[i]))) window.outputs.push_back(places[i]);
    }
    return window;
  }

 private:
  struct State {
    ToldWindow window;
    std::set<wl_output*> outputs;
    friend bool operator==(const State&, const State&) = default;
  };
  using Handle = zwlr_foreign_toplevel_handle_v1;

  static Toplevel& of(void* data) { return *static_cast<Toplevel*>(data); }
  static void appId(void* self, Handle* /*handle*/, const char* id) {
    // Whose window it is is told in no other way.
    if (isOwnAppId(id)) of(self).told_.window.owner = getpid();
  }
  static void entered(void* self, Handle* /*handle*/, wl_output* output) {
    if (output) of(self).told_.outputs.insert(output);
  }
  static void left(void* self, Handle* /*handle*/, wl_output* output) { of(self).told_.outputs.erase(output); }
  static void state(void* self, Handle* /*handle*/, wl_array* array) {
    const std::span states(static_cast<const std::uint32_t*>(array->data), array->size / sizeof(std::uint32_t));
    const auto has = [&](std::uint32_t each) { return std::find(states.begin(), states.end(), each) != states.end(); };
    auto& window = of(self).told_.window;
    window.maximized = has(ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_MAXIMIZED);
    window.minimized = has(ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_MINIMIZED);
    window.fullscreen = has(ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_FULLSCREEN);
  }
  static void done(void* self, Handle* /*handle*/) {
    auto& toplevel = of(self);
    // Most of what is told is about titles and about which window has the keyboard.
    if (toplevel.valid_ == toplevel.told_) return;
    toplevel.valid_ = toplevel.told_;
    toplevel.list_.changes_.soon();
  }
  static void closed(void* self, Handle* /*handle*/) {
    auto& list = of(self).list_;
    std::erase_if(list.toplevels_, [=](const auto& each) { return each.get() == self; });
    list.changes_.soon();
  }

  const WlPtr<Handle> handle_;
  ForeignToplevels& list_;
  State told_;
  State valid_;
};

ForeignToplevels::ForeignToplevels(zwlr_foreign_toplevel_manager_v1* manager, const Monitors& monitors,
                                   ChangeCalls& changes)
    : manager_(manager), monitors_(monitors), changes_(changes) {
  static constexpr auto listener = filled<zwlr_foreign_toplevel_manager_v1_listener>([](auto& all) {
    all.toplevel = told;
    all.finished = finished;
  });
  zwlr_foreign_toplevel_manager_v1_add_listener(manager, &listener, this);
  g_signal_connect(monitors.display(), "monitor-removed", G_CALLBACK(outputRemoved), this);
}

ForeignToplevels::~ForeignToplevels() { g_signal_handlers_disconnect_by_data(monitors_.display(), this); }

std::optional<std::vector<WindowDescription>> ForeignToplevels::onScreen() const {
  if (!manager_) return std::nullopt;
  const auto all = monitors_.all();
  const auto places = monitors_.placesOf(all);
  std::vector<WindowDescription> windows;
  // The latest first, for want of a better order.
  std::for_each(toplevels_.rbegin(), toplevels_.rend(), [&](const auto& each) {
    const auto hidden = hiddenBy(each->tell(all, places), places);
    windows.insert(windows.end(), hidden.begin(), hidden.end());
  });
  monitors_.moveToGlobal(windows);
  return windows;
}

void ForeignToplevels::told(void* self, zwlr_foreign_toplevel_manager_v1* /*manager*/,
                            zwlr_foreign_toplevel_handle_v1* handle) {
  auto& list = *static_cast<ForeignToplevels*>(self);
  list.toplevels_.push_back(std::make_unique<Toplevel>(handle, list));
}

void ForeignToplevels::finished(void* self, zwlr_foreign_toplevel_manager_v1* /*manager*/) {
  auto& list = *static_cast<ForeignToplevels*>(self);
  list.manager_.reset();
  list.toplevels_.clear();
  list.changes_.soon();
}

void ForeignToplevels::outputRemoved(GdkDisplay* /*display*/, GdkMonitor* monitor, ForeignToplevels* self) {
  // A new output may come to stand at the same address.
  for (const auto& each : self->toplevels_) each->forget(gdk_wayland_monitor_get_wl_output(monitor));
}

}  // namespace

std::unique_ptr<WindowList> foreignToplevels(const WaylandGlobals& globals, const Monitors& monitors,
                                             ChangeCalls& changes) {
  auto* const manager = globals.bind<zwlr_foreign_toplevel_manager_v1>(zwlr_foreign_toplevel_manager_v1_interface, 1);
  if (!manager) return nullptr;
  auto windows = std::make_unique<ForeignToplevels>(manager, monitors, changes);
  globals.settle();
  return windows;
}

}  // namespace tavelle
