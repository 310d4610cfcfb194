#pragma once

#include <functional>

#include "base/registration.h"

namespace tavelle {

class Monitors;
class Screens;
class Spaces;
class WallpaperWindows;
class WindowList;
class XConnection;

/// The display server that this process is a client of, and what it tells of its desktop. Main thread only.
class DisplayServer {
 public:
  virtual ~DisplayServer() = default;

  virtual Monitors& monitors() = 0;
  virtual Screens& screens() = 0;
  virtual Spaces& spaces() = 0;
  virtual WallpaperWindows& windows() = 0;
  virtual WindowList& windowList() = 0;
  /// Calls `happened` on the main loop after something that is likely to change which windows are in sight.
  virtual Registration onWindowEvent(std::function<void()> happened) = 0;
  /// The X server's; null where there is none, as with a Wayland compositor.
  virtual const XConnection* xConnection() const { return nullptr; }
};

}  // namespace tavelle
