#pragma once

#include <memory>

#include "base/registration.h"
#include "platform/linux/x11/x_connection.h"

namespace tavelle {

/// Keeps the icons in sight of a file manager that draws them and the picture into one opaque window for the desktop,
/// as those of Xfce and MATE do: wallpaper windows above it leave out the pixels that are not the plain picture's. It
/// follows icons, picture and file manager as they change, and costs nothing while nothing does. Where the plain
/// picture is not known, or too much of the window is something else, wallpapers stay whole. Main thread only.
class DesktopIcons {
 public:
  /// Does nothing before somebody asks for something. The connection must outlive this.
  explicit DesktopIcons(const XConnection& server);
  DesktopIcons(const DesktopIcons&) = delete;
  DesktopIcons& operator=(const DesktopIcons&) = delete;
  ~DesktopIcons();

  /// Has this window of the program's leave out the icons below it, until the handle is dropped or this dies.
  Registration keepInSight(xcb_window_t wallpaper);

 private:
  class Watch;

  const XConnection& server_;
  std::shared_ptr<Watch> watch_;
};

}  // namespace tavelle
