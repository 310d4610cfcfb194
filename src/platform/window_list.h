#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/geometry.h"

namespace tavelle {

/// A window as the desktop describes it. What cannot be told is missing.
struct WindowDescription {
  /// 0 for the ordinary windows of applications, full-screen ones and those kept above the others included; another
  /// value for what floats around them: docks, panels, notifications, menus, tooltips.
  std::optional<int> layer;
  /// The process that the window belongs to.
  std::optional<std::int32_t> owner;
  /// From 0, invisible, to 1, opaque. Missing for a window that never asked for anything but opaque.
  std::optional<double> alpha;
  /// What the user sees of it, with its title bar and borders and without its shadow, in global display space (origin
  /// at the top-left of the main screen, y grows downwards). It may reach beyond the screens.
  std::optional<Rect> bounds;
};

/// The windows of all applications, this one included. Main thread only.
class WindowList {
 public:
  virtual ~WindowList() = default;

  /// The windows on screen at this moment, front to back: neither minimised nor on another workspace nor swept away to
  /// show the desktop. A window that others hide is on screen. Windows that make up the desktop itself are left out,
  /// but for what they hide of a wallpaper that they have come to lie above. None when the desktop gives no list.
  virtual std::optional<std::vector<WindowDescription>> onScreen() const = 0;
};

}  // namespace tavelle
