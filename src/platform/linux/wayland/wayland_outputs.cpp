#include "platform/linux/wayland/wayland_outputs.h"

#include <gdk/gdkwayland.h>
#include <xdg-output-unstable-v1-client-protocol.h>

#include "base/filled.h"

namespace tavelle {

class WaylandOutputs::Output {
 public:
  Output(zxdg_output_manager_v1* manager, Monitors& monitors, GdkMonitor* monitor)
      : monitors_(monitors),
        monitor_(monitor),
        handle_(zxdg_output_manager_v1_get_xdg_output(manager, gdk_wayland_monitor_get_wl_output(monitor))) {
    static constexpr auto listener = filled<zxdg_output_v1_listener>([](auto& all) {
      all.logical_position = position;
      all.logical_size = size;
      all.done = ignoreEvent;
      all.name = name;
      all.description = ignoreEvent;
    });
    zxdg_output_v1_add_listener(handle_.get(), &listener, this);
  }

 private:
  static void position(void* self, zxdg_output_v1* /*handle*/, std::int32_t x, std::int32_t y) {
    static_cast<Output*>(self)->change([=](OutputDescription& output) {
      output.place.x = x;
      output.place.y = y;
    });
  }
  static void size(void* self, zxdg_output_v1* /*handle*/, std::int32_t width, std::int32_t height) {
    static_cast<Output*>(self)->change([=](OutputDescription& output) {
      output.place.width = width;
      output.place.height = height;
    });
  }
  static void name(void* self, zxdg_output_v1* /*handle*/, const char* name) {
    static_cast<Output*>(self)->change([=](OutputDescription& output) { output.name = name; });
  }

  template <typename Change>
  void change(Change apply) {
    apply(description_);
    monitors_.describe(monitor_, description_);
  }

  Monitors& monitors_;
  GdkMonitor* const monitor_;
  const WlPtr<zxdg_output_v1> handle_;
  OutputDescription description_;
};

WaylandOutputs::WaylandOutputs(const WaylandGlobals& globals, Monitors& monitors)
    : monitors_(monitors), manager_(globals.bind<zxdg_output_manager_v1>(zxdg_output_manager_v1_interface, 1)) {
  if (!manager_) return;
  GdkDisplay* const display = monitors.display();
  g_signal_connect(display, "monitor-added", G_CALLBACK(added), this);
  g_signal_connect(display, "monitor-removed", G_CALLBACK(removed), this);
  for (int i = 0; i < gdk_display_get_n_monitors(display); ++i) {
    added(display, gdk_display_get_monitor(display, i), this);
  }
  globals.settle();
}

WaylandOutputs::~WaylandOutputs() { g_signal_handlers_disconnect_by_data(monitors_.display(), this); }

void WaylandOutputs::added(GdkDisplay* /*display*/, GdkMonitor* monitor, WaylandOutputs* self) {
  auto& output = self->outputs_[monitor];
  if (!output) output = std::make_unique<Output>(self->manager_.get(), self->monitors_, monitor);
}

void WaylandOutputs::removed(GdkDisplay* /*display*/, GdkMonitor* monitor, WaylandOutputs* self) {
  self->outputs_.erase(monitor);
}

}  // namespace tavelle
