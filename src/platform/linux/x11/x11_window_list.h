#pragma once

#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/x11/x_connection.h"
#include "platform/window_list.h"

namespace tavelle {

/// The window manager's list of windows (EWMH 1.5, _NET_CLIENT_LIST_STACKING). One look takes two round trips to the
/// server, whatever the number of windows: one for the list, one for all that is asked about the windows in it.
class X11WindowList final : public WindowList {
 public:
  X11WindowList(const XConnection& connection, const Monitors& monitors);

  std::optional<std::vector<WindowDescription>> onScreen() const override;

 private:
  class WindowRequest;

  const XConnection& connection_;
  const Monitors& monitors_;
  const std::vector<xcb_atom_t> atoms_;
};

}  // namespace tavelle
