#pragma once

namespace tavelle {

class Monitors;
class Screens;
class SharedDesktop;
class Spaces;
class WallpaperWindows;
class WindowManager;
class XConnection;

/// The display server that this process is a client of, and the services on it. Main thread only.
class DisplayServer {
 public:
  virtual ~DisplayServer() = default;

  virtual Monitors& monitors() = 0;
  virtual Screens& screens() = 0;
  virtual SharedDesktop& sharedDesktop() = 0;
  virtual Spaces& spaces() = 0;
  virtual WallpaperWindows& windows() = 0;
  virtual WindowManager& windowManager() = 0;
  /// The X server's; null where there is none, as with a Wayland compositor.
  virtual const XConnection* xConnection() const { return nullptr; }
};

}  // namespace tavelle
