#pragma once

#include <functional>
#include <vector>

#include "platform/linux/desktop/x_connection.h"

namespace tavelle {

/// Listens to what the window manager tells about the active window, the current workspace and minimised windows.
/// Main thread only.
class WindowManagerWatch {
 public:
  /// Calls `happened` on the main loop, once for all that comes in together. It may end the watch.
  explicit WindowManagerWatch(std::function<void()> happened);
  WindowManagerWatch(const WindowManagerWatch&) = delete;
  WindowManagerWatch& operator=(const WindowManagerWatch&) = delete;
  ~WindowManagerWatch();

 private:
  static int readable(int descriptor, unsigned condition, void* self);

  void listenTo(xcb_window_t window) const;
  void listenToClients() const;
  bool drain() const;
  bool matters(const xcb_property_notify_event_t& event) const;

  const std::function<void()> happened_;
  /// Of its own: nobody else may take its events, and none may wait unseen behind an answer that somebody reads.
  const XConnection connection_;
  const std::vector<xcb_atom_t> atoms_;
  unsigned source_ = 0;
};

}  // namespace tavelle
