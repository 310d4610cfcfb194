#pragma once

#include "platform/linux/toolkit/display_server.h"
#include "platform/linux/toolkit/gdk_screens.h"
#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/x11/x11_shared_desktop.h"
#include "platform/linux/x11/x11_spaces.h"
#include "platform/linux/x11/x11_wallpaper_window.h"
#include "platform/linux/x11/x11_window_manager.h"
#include "platform/linux/x11/x_connection.h"

namespace tavelle {

/// The X server, and what the window manager tells on it.
class X11Server final : public DisplayServer {
 public:
  explicit X11Server(GdkDisplay* display) : monitors_(display), connection_(display) {}

  Monitors& monitors() override { return monitors_; }
  Screens& screens() override { return screens_; }
  Spaces& spaces() override { return spaces_; }
  WallpaperWindows& windows() override { return windows_; }
  SharedDesktop& sharedDesktop() override { return sharedDesktop_; }
  WindowManager& windowManager() override { return windowManager_; }
  const XConnection* xConnection() const override { return &connection_; }

 private:
  Monitors monitors_;
  const XConnection connection_;
  X11SharedDesktop sharedDesktop_{connection_, monitors_};
  X11WindowManager windowManager_{connection_, monitors_, sharedDesktop_};
  GdkScreens screens_{monitors_, windowManager_};
  X11Spaces spaces_{connection_};
  X11WallpaperWindows windows_{monitors_, sharedDesktop_};
};

}  // namespace tavelle
