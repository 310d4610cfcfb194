#pragma once

#include <gtkmm/window.h>
#include <sigc++/connection.h>

#include <functional>

namespace tavelle {

/// A point of a Wayland compositor's screen for a menu to open beside: a surface of one pixel on the topmost layer,
/// which has the keyboard while it is there. It takes no room from anything. Main thread only.
class MenuAnchor {
 public:
  /// On `monitor`, `left` and `top` logical pixels from its corner. `ready` is called once on the main loop, when the
  /// surface is on screen and has the keyboard: a menu that opens earlier would never get it.
  MenuAnchor(GdkMonitor* monitor, int left, int top, std::function<void()> ready);
  MenuAnchor(const MenuAnchor&) = delete;
  MenuAnchor& operator=(const MenuAnchor&) = delete;
  ~MenuAnchor();

  /// For a menu to be its popup.
  GdkWindow* surface() { return window_.get_window()->gobj(); }

 private:
  void tell();

  std::function<void()> ready_;
  Gtk::Window window_;
  sigc::connection patience_;
};

}  // namespace tavelle
