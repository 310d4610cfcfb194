#pragma once

#include <gdk/gdk.h>

#include <functional>
#include <optional>
#include <vector>

#include "platform/linux/handles.h"
#include "platform/linux/toolkit/change_calls.h"
#include "platform/linux/toolkit/work_areas.h"
#include "platform/screens.h"
#include "platform/window_list.h"

namespace tavelle {

/// GDK's monitors. Where none of them is the main one by the display server's word, as on Wayland, it is the one at the
/// layout's origin, else the first.
class GdkScreens final : public Screens {
 public:
  /// Of the toolkit's default display.
  explicit GdkScreens(const WorkAreas& workAreas);
  GdkScreens(const GdkScreens&) = delete;
  GdkScreens& operator=(const GdkScreens&) = delete;
  ~GdkScreens() override;

  std::vector<Screen> list() const override;
  Registration onChange(std::function<void()> changed) override;

 private:
  static void added(GdkDisplay* display, GdkMonitor* monitor, GdkScreens* self);
  static void removed(GdkDisplay* display, GdkMonitor* monitor, GdkScreens* self);
  static void changed(GdkScreens* self);
  void listenTo(GdkMonitor* monitor);

  const WorkAreas& workAreas_;
  GdkDisplay* const display_;
  std::vector<GObjectPtr<GdkMonitor>> listenedTo_;
  ChangeCalls calls_;
};

/// Whether the display is a Wayland compositor, where menus and wallpapers are layers, rather than an X server.
bool isWaylandDisplay(GdkDisplay* display);

/// GDK's monitors, the main one first.
std::vector<GdkMonitor*> monitors();

/// Where these monitors are, in GDK's coordinates.
std::vector<Rect> placesOf(const std::vector<GdkMonitor*>& monitors);

/// Takes windows whose bounds are in GDK's coordinates into global display space.
void moveToGlobal(std::vector<WindowDescription>& windows);

/// The monitor at the screen's place; null when there is none there any more.
GdkMonitor* monitorOf(const Screen& screen);

/// The monitor that holds the point, which is in GDK's coordinates, else the main one; null when there is none.
GdkMonitor* monitorAt(const Point& point);

/// GDK's own number of the monitor at the screen's place, by which some desktops know it; none when there is no monitor
/// there any more.
std::optional<int> monitorNumber(const Screen& screen);

/// The smallest rectangle round all monitors, in global display space; empty when there are none.
Rect extentOfMonitors();

/// How the pixels of the X server's picture, counted from its top-left corner, lie in global display space.
struct PixelSpace {
  /// As things are now.
  static PixelSpace current();

  Rect toPixels(const Rect& global) const;
  Rect toGlobal(const Rect& pixels) const;

  /// The main screen's top-left corner, in GDK's coordinates.
  double originX;
  double originY;
  /// Pixels in a logical pixel.
  double scale;
};

}  // namespace tavelle
