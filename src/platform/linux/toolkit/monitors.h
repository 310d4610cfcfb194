#pragma once

#include <gdk/gdk.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/geometry.h"
#include "base/registration.h"
#include "platform/linux/handles.h"
#include "platform/linux/toolkit/change_calls.h"
#include "platform/screens.h"
#include "platform/window_list.h"

namespace tavelle {

/// How the pixels of the X server's picture, counted from its top-left corner, lie in global display space.
struct PixelSpace {
  Rect toPixels(const Rect& global) const;
  Rect toGlobal(const Rect& pixels) const;

  /// The main screen's top-left corner, in GDK's coordinates.
  double originX;
  double originY;
  /// Pixels in a logical pixel.
  double scale;
};

/// What a Wayland compositor itself tells of a monitor. What it has not told is empty.
struct OutputDescription {
  /// In the layout of all monitors, in logical pixels, which are GDK's coordinates.
  Rect place;
  /// What the compositor calls it, which is its connector.
  std::string name;
};

/// The monitors of the toolkit's display. What is told of a monitor is true until the main loop goes on. Main thread
/// only.
class Monitors {
 public:
  /// The display stays open for as long as this lives.
  explicit Monitors(GdkDisplay* display);
  Monitors(const Monitors&) = delete;
  Monitors& operator=(const Monitors&) = delete;
  ~Monitors();

  GdkDisplay* display() const { return display_; }

  /// The main one first, the others from left to right, and from the top down where they lie above each other. Where
  /// none of them is the main one by the display server's word, as on Wayland, it is the one at the layout's origin,
  /// else the leftmost.
  std::vector<GdkMonitor*> all() const;
  /// Calls `changed` on the main loop after anything about the monitors may have changed, and once to begin with.
  Registration onChange(std::function<void()> changed);

  /// What the display server calls it: the name of its connector. Empty when it has no name.
  std::string nameOf(GdkMonitor* monitor) const;
  /// Where it is, in GDK's coordinates.
  Rect placeOf(GdkMonitor* monitor) const;
  std::vector<Rect> placesOf(const std::vector<GdkMonitor*>& monitors) const;
  /// The smallest rectangle round all of them, in global display space; empty when there are none.
  Rect extent() const;

  /// The one at the screen's place; null when there is none there any more.
  GdkMonitor* of(const Screen& screen) const;
  /// GDK's own number of that one, by which some desktops know it.
  std::optional<int> numberOf(const Screen& screen) const;
  /// The one that holds the point, which is in GDK's coordinates, else the main one; null when there is none.
  GdkMonitor* at(const Point& point) const;

  /// Has `description` count instead of what GDK says of the monitor, as far as it goes, for as long as there is such a
  /// monitor.
  void describe(GdkMonitor* monitor, const OutputDescription& description);

  /// Takes a rectangle in GDK's coordinates into global display space.
  Rect toGlobal(const Rect& inGdk) const;
  /// Does so with the windows' bounds.
  void moveToGlobal(std::vector<WindowDescription>& windows) const;
  /// Only on an X server.
  PixelSpace pixelSpace() const;

 private:
  static void added(GdkDisplay* display, GdkMonitor* monitor, Monitors* self);
  static void removed(GdkDisplay* display, GdkMonitor* monitor, Monitors* self);
  static void changed(Monitors* self);
  void listenTo(GdkMonitor* monitor);
  /// The main one's place, in GDK's coordinates; an empty one at their origin when there are no monitors.
  Rect mainPlace() const;

  GdkDisplay* const display_;
  std::vector<GObjectPtr<GdkMonitor>> listenedTo_;
  std::map<GdkMonitor*, OutputDescription> described_;
  ChangeCalls calls_;
};

/// Whether the display is a Wayland compositor, where menus and wallpapers are layers, rather than an X server.
bool isWaylandDisplay(GdkDisplay* display);

inline Rect rectOf(const GdkRectangle& rectangle) {
  return {static_cast<double>(rectangle.x), static_cast<double>(rectangle.y), static_cast<double>(rectangle.width),
          static_cast<double>(rectangle.height)};
}

}  // namespace tavelle
