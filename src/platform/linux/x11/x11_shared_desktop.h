#pragma once

#include <memory>

#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/x11/stacking.h"
#include "platform/linux/x11/x_connection.h"
#include "platform/shared_desktop.h"

namespace tavelle {

/// On an X server. A file manager's opaque window belongs below the wallpapers, which leave out its icons; a
/// transparent one belongs above them. As long as nothing changes on the desktop it costs nothing. Main thread only.
class X11SharedDesktop final : public SharedDesktop {
 public:
  /// Does nothing before a wallpaper comes. Both must outlive this.
  X11SharedDesktop(const XConnection& server, const Monitors& monitors);
  X11SharedDesktop(const X11SharedDesktop&) = delete;
  X11SharedDesktop& operator=(const X11SharedDesktop&) = delete;
  ~X11SharedDesktop() override;

  Registration onTrouble(std::function<void(const std::string&)> tell) override;

  /// How wallpapers are to be asked for under the window manager that runs now.
  Stacking stacking() const { return stackingOf(monitors_.display()); }
  /// Asks wallpapers back to their place, when they are not there. Whether they have just been asked, so that what lies
  /// above them now is about to change. Blocks for an answer of the server's.
  bool isPuttingRight() const;
  /// Looks after this window of the program's, until the handle is dropped or this dies.
  Registration share(xcb_window_t wallpaper);

 private:
  class Watch;

  const XConnection& server_;
  const Monitors& monitors_;
  std::function<void(const std::string&)> tell_;
  std::shared_ptr<Watch> watch_;
};

}  // namespace tavelle
