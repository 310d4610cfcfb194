#pragma once

#include "base/registration.h"
#include "platform/linux/glib_main_loop.h"
#include "platform/linux/x11/x_connection.h"

namespace tavelle {

/// An ordinary window of one pixel, behind all others of its kind, that comes for a moment and goes. Cinnamon's
/// compositor paints windows for the desktop in the order in which they came, whatever was asked for since, until an
/// ordinary window has it sort all of them. Main thread only.
class BriefWindow {
 public:
  /// The connection must outlive this.
  explicit BriefWindow(const XConnection& connection);
  BriefWindow(const BriefWindow&) = delete;
  BriefWindow& operator=(const BriefWindow&) = delete;
  ~BriefWindow();

  /// Lets it come, if it is not there.
  void show();

 private:
  void close();

  const XConnection& connection_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  GLibMainLoop loop_;
  Registration closing_;
};

}  // namespace tavelle
