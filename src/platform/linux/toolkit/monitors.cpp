#include "platform/linux/toolkit/monitors.h"

#include <gdk/gdkwayland.h>

#include <algorithm>
#include <tuple>
#include <utility>

namespace tavelle {

Rect PixelSpace::toPixels(const Rect& global) const {
  return {(originX + global.x) * scale, (originY + global.y) * scale, global.width * scale, global.height * scale};
}

Rect PixelSpace::toGlobal(const Rect& pixels) const {
  return {pixels.x / scale - originX, pixels.y / scale - originY, pixels.width / scale, pixels.height / scale};
}

Monitors::Monitors(GdkDisplay* display) : display_(display) {
  g_signal_connect(display_, "monitor-added", G_CALLBACK(added), this);
  g_signal_connect(display_, "monitor-removed", G_CALLBACK(removed), this);
  GdkScreen* const screen = gdk_display_get_default_screen(display_);
  g_signal_connect_swapped(screen, "monitors-changed", G_CALLBACK(changed), this);
  g_signal_connect_swapped(screen, "size-changed", G_CALLBACK(changed), this);
  for (GdkMonitor* monitor : all()) listenTo(monitor);
}

Monitors::~Monitors() {
  g_signal_handlers_disconnect_by_data(display_, this);
  g_signal_handlers_disconnect_by_data(gdk_display_get_default_screen(display_), this);
  for (const auto& monitor : listenedTo_) g_signal_handlers_disconnect_by_data(monitor.get(), this);
}

std::vector<GdkMonitor*> Monitors::all() const {
  const int count = gdk_display_get_n_monitors(display_);
  std::vector<GdkMonitor*> all;
  all.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) all.push_back(gdk_display_get_monitor(display_, i));
  // Display servers tell of them in whatever order they have them.
  std::stable_sort(all.begin(), all.end(), [this](GdkMonitor* one, GdkMonitor* other) {
    const Rect a = placeOf(one);
    const Rect b = placeOf(other);
    return std::tie(a.x, a.y) < std::tie(b.x, b.y);
  });
  std::stable_partition(all.begin(), all.end(), [this](GdkMonitor* each) {
    const Rect place = placeOf(each);
    return place.x == 0 && place.y == 0;
  });
  std::stable_partition(all.begin(), all.end(), gdk_monitor_is_primary);
  return all;
}

Registration Monitors::onChange(std::function<void()> changed) {
  auto registration = calls_.add(std::move(changed));
  // Monitors may have changed since they were looked at and before anybody listened.
  calls_.soon();
  return registration;
}

std::string Monitors::nameOf(GdkMonitor* monitor) const {
  const auto described = described_.find(monitor);
  if (described != described_.end() && !described->second.name.empty()) return described->second.name;
  // On X11 GDK gives the connector as the model, also of a monitor that tells its own (seen with GTK 3.24).
  const char* const model = gdk_monitor_get_model(monitor);
  return model ? model : "";
}

Rect Monitors::placeOf(GdkMonitor* monitor) const {
  const auto described = described_.find(monitor);
  if (described != described_.end() && !described->second.place.isEmpty()) return described->second.place;
  GdkRectangle geometry;
  gdk_monitor_get_geometry(monitor, &geometry);
  return rectOf(geometry);
}

std::vector<Rect> Monitors::placesOf(const std::vector<GdkMonitor*>& monitors) const {
  std::vector<Rect> places;
  places.reserve(monitors.size());
  for (GdkMonitor* monitor : monitors) places.push_back(placeOf(monitor));
  return places;
}

Rect Monitors::extent() const {
  Rect extent = mainPlace();
  for (const Rect& place : placesOf(all())) extent = around(extent, place);
  return toGlobal(extent);
}

GdkMonitor* Monitors::of(const Screen& screen) const {
  const auto monitors = all();
  const auto found = std::find_if(monitors.begin(), monitors.end(),
                                  [&](GdkMonitor* each) { return toGlobal(placeOf(each)) == screen.bounds; });
  return found == monitors.end() ? nullptr : *found;
}

std::optional<int> Monitors::numberOf(const Screen& screen) const {
  GdkMonitor* const monitor = of(screen);
  for (int i = 0; i < gdk_display_get_n_monitors(display_); ++i) {
    if (monitor && gdk_display_get_monitor(display_, i) == monitor) return i;
  }
  return std::nullopt;
}

GdkMonitor* Monitors::at(const Point& point) const {
  const auto monitors = all();
  if (monitors.empty()) return nullptr;
  const auto found =
      std::find_if(monitors.begin(), monitors.end(), [&](GdkMonitor* each) { return placeOf(each).contains(point); });
  return found == monitors.end() ? monitors.front() : *found;
}

void Monitors::describe(GdkMonitor* monitor, const OutputDescription& description) {
  described_[monitor] = description;
  calls_.soon();
}

Rect Monitors::mainPlace() const {
  const auto monitors = all();
  return monitors.empty() ? Rect{} : placeOf(monitors.front());
}

Rect Monitors::toGlobal(const Rect& inGdk) const {
  const Rect main = mainPlace();
  return {inGdk.x - main.x, inGdk.y - main.y, inGdk.width, inGdk.height};
}

void Monitors::moveToGlobal(std::vector<WindowDescription>& windows) const {
  const Rect main = mainPlace();
  for (WindowDescription& window : windows) {
    if (!window.bounds) continue;
    window.bounds->x -= main.x;
    window.bounds->y -= main.y;
  }
}

PixelSpace Monitors::pixelSpace() const {
  const Rect main = mainPlace();
  GdkWindow* const root = gdk_screen_get_root_window(gdk_display_get_default_screen(display_));
  return {.originX = main.x, .originY = main.y, .scale = static_cast<double>(gdk_window_get_scale_factor(root))};
}

/// Wayland tells that a monitor has another place in no other way.
void Monitors::listenTo(GdkMonitor* monitor) {
  g_signal_connect_swapped(monitor, "notify::geometry", G_CALLBACK(changed), this);
  listenedTo_.push_back(retain(monitor));
}

void Monitors::added(GdkDisplay* /*display*/, GdkMonitor* monitor, Monitors* self) {
  self->listenTo(monitor);
  changed(self);
}

void Monitors::removed(GdkDisplay* /*display*/, GdkMonitor* monitor, Monitors* self) {
  g_signal_handlers_disconnect_by_data(monitor, self);
  std::erase_if(self->listenedTo_, [=](const auto& each) { return each.get() == monitor; });
  self->described_.erase(monitor);
  changed(self);
}

/// GDK tells of a monitor before it has settled its list; the main loop goes on when it has.
void Monitors::changed(Monitors* self) { self->calls_.soon(); }

bool isWaylandDisplay(GdkDisplay* display) { return GDK_IS_WAYLAND_DISPLAY(display); }

}  // namespace tavelle
