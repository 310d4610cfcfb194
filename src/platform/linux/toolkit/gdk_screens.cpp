#include "platform/linux/toolkit/gdk_screens.h"

#include <gdk/gdkwayland.h>

#include <algorithm>
#include <utility>

#include "platform/linux/toolkit/output_description.h"

namespace tavelle {
namespace {

Rect geometryOf(GdkMonitor* monitor) {
  const OutputDescription* const told = toldOf(monitor);
  if (told && !told->place.isEmpty()) return told->place;
  GdkRectangle geometry;
  gdk_monitor_get_geometry(monitor, &geometry);
  return rectOf(geometry);
}

bool isAtOrigin(GdkMonitor* monitor) {
  const Rect place = geometryOf(monitor);
  return place.x == 0 && place.y == 0;
}

/// A rectangle of GDK's in global display space.
Rect global(const Rect& inGdk, const Rect& main) {
  return {inGdk.x - main.x, inGdk.y - main.y, inGdk.width, inGdk.height};
}

Rect globalPlace(GdkMonitor* monitor, const Rect& main) { return global(geometryOf(monitor), main); }

std::string nameOf(GdkMonitor* monitor) {
  const OutputDescription* const told = toldOf(monitor);
  if (told && !told->name.empty()) return told->name;
  // On X11 GDK gives the connector as the model, also of a monitor that tells its own (seen with GTK 3.24).
  const char* const model = gdk_monitor_get_model(monitor);
  return model ? model : "";
}

Screen screenOf(GdkMonitor* monitor, const Rect& main, const Rect& workArea) {
  const auto upwards = [&](const Rect& downwards) {
    return Rect{downwards.x, main.height - downwards.maxY(), downwards.width, downwards.height};
  };
  const Rect bounds = globalPlace(monitor, main);
  return {.name = nameOf(monitor),
          .frame = upwards(bounds),
          .visibleFrame = upwards(global(workArea, main)),
          .bounds = bounds};
}

}  // namespace

GdkScreens::GdkScreens(const WorkAreas& workAreas) : workAreas_(workAreas), display_(gdk_display_get_default()) {
  g_signal_connect(display_, "monitor-added", G_CALLBACK(added), this);
  g_signal_connect(display_, "monitor-removed", G_CALLBACK(removed), this);
  GdkScreen* const screen = gdk_display_get_default_screen(display_);
  g_signal_connect_swapped(screen, "monitors-changed", G_CALLBACK(changed), this);
  g_signal_connect_swapped(screen, "size-changed", G_CALLBACK(changed), this);
  for (GdkMonitor* monitor : monitors()) listenTo(monitor);
}

GdkScreens::~GdkScreens() {
  g_signal_handlers_disconnect_by_data(display_, this);
  g_signal_handlers_disconnect_by_data(gdk_display_get_default_screen(display_), this);
  for (const auto& monitor : listenedTo_) g_signal_handlers_disconnect_by_data(monitor.get(), this);
}

std::vector<Screen> GdkScreens::list() const {
  const auto all = monitors();
  const auto areas = workAreas_.of(all);
  std::vector<Screen> screens;
  screens.reserve(all.size());
  for (std::size_t i = 0; i < all.size(); ++i) screens.push_back(screenOf(all[i], geometryOf(all.front()), areas[i]));
  return screens;
}

Registration GdkScreens::onChange(std::function<void()> changed) {
  auto registration = calls_.add(std::move(changed));
  // Monitors may have changed since they were looked at and before anybody listened.
  calls_.soon();
  return registration;
}

/// What the compositor tells after GDK's screen has told of a change, WaylandOutputs makes known by the monitor.
void GdkScreens::listenTo(GdkMonitor* monitor) {
  g_signal_connect_swapped(monitor, "notify::geometry", G_CALLBACK(changed), this);
  listenedTo_.push_back(retain(monitor));
}

void GdkScreens::added(GdkDisplay* /*display*/, GdkMonitor* monitor, GdkScreens* self) {
  self->listenTo(monitor);
  changed(self);
}

void GdkScreens::removed(GdkDisplay* /*display*/, GdkMonitor* monitor, GdkScreens* self) {
  g_signal_handlers_disconnect_by_data(monitor, self);
  std::erase_if(self->listenedTo_, [=](const auto& each) { return each.get() == monitor; });
  changed(self);
}

/// GDK tells of a monitor before it has settled its list; the main loop goes on when it has.
void GdkScreens::changed(GdkScreens* self) { self->calls_.soon(); }

bool isWaylandDisplay(GdkDisplay* display) { return GDK_IS_WAYLAND_DISPLAY(display); }

std::vector<GdkMonitor*> monitors() {
  GdkDisplay* const display = gdk_display_get_default();
  const int count = gdk_display_get_n_monitors(display);
  std::vector<GdkMonitor*> all;
  all.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) all.push_back(gdk_display_get_monitor(display, i));
  std::stable_partition(all.begin(), all.end(), isAtOrigin);
  std::stable_partition(all.begin(), all.end(), gdk_monitor_is_primary);
  return all;
}

std::vector<Rect> placesOf(const std::vector<GdkMonitor*>& monitors) {
  std::vector<Rect> places;
  places.reserve(monitors.size());
  for (GdkMonitor* monitor : monitors) places.push_back(geometryOf(monitor));
  return places;
}

void moveToGlobal(std::vector<WindowDescription>& windows) {
  const auto all = monitors();
  if (all.empty()) return;
  const Rect main = geometryOf(all.front());
  for (WindowDescription& window : windows) {
    if (window.bounds) window.bounds = global(*window.bounds, main);
  }
}

GdkMonitor* monitorOf(const Screen& screen) {
  const auto all = monitors();
  const auto found = std::find_if(all.begin(), all.end(), [&](GdkMonitor* monitor) {
    return globalPlace(monitor, geometryOf(all.front())) == screen.bounds;
  });
  return found == all.end() ? nullptr : *found;
}

GdkMonitor* monitorAt(const Point& point) {
  const auto all = monitors();
  if (all.empty()) return nullptr;
  const auto found =
      std::find_if(all.begin(), all.end(), [&](GdkMonitor* monitor) { return geometryOf(monitor).contains(point); });
  return found == all.end() ? all.front() : *found;
}

std::optional<int> monitorNumber(const Screen& screen) {
  GdkMonitor* const monitor = monitorOf(screen);
  GdkDisplay* const display = gdk_display_get_default();
  for (int i = 0; i < gdk_display_get_n_monitors(display); ++i) {
    if (monitor && gdk_display_get_monitor(display, i) == monitor) return i;
  }
  return std::nullopt;
}

Rect extentOfMonitors() {
  const auto all = monitors();
  if (all.empty()) return {};
  const Rect main = geometryOf(all.front());
  Rect extent = main;
  for (const Rect& place : placesOf(all)) extent = around(extent, place);
  return global(extent, main);
}

PixelSpace PixelSpace::current() {
  const auto all = monitors();
  const Rect main = all.empty() ? Rect{} : geometryOf(all.front());
  return {.originX = main.x,
          .originY = main.y,
          .scale = static_cast<double>(gdk_window_get_scale_factor(gdk_get_default_root_window()))};
}

Rect PixelSpace::toPixels(const Rect& global) const {
  return {(originX + global.x) * scale, (originY + global.y) * scale, global.width * scale, global.height * scale};
}

Rect PixelSpace::toGlobal(const Rect& pixels) const {
  return {pixels.x / scale - originX, pixels.y / scale - originY, pixels.width / scale, pixels.height / scale};
}

}  // namespace tavelle
