#include "platform/linux/menu/menu_anchor.h"

#include <glibmm/main.h>
#include <gtk-layer-shell.h>

#include <utility>

namespace tavelle {
namespace {

/// How long the keyboard may take to come. There may be none.
constexpr unsigned patience = 200;  // ms

}  // namespace

MenuAnchor::MenuAnchor(GdkMonitor* monitor, int left, int top, std::function<void()> ready) : ready_(std::move(ready)) {
  gtk_layer_init_for_window(window_.gobj());
  gtk_layer_set_namespace(window_.gobj(), "tavelle-menu");
  gtk_layer_set_layer(window_.gobj(), GTK_LAYER_SHELL_LAYER_OVERLAY);
  gtk_layer_set_monitor(window_.gobj(), monitor);
  gtk_layer_set_anchor(window_.gobj(), GTK_LAYER_SHELL_EDGE_LEFT, TRUE);
  gtk_layer_set_anchor(window_.gobj(), GTK_LAYER_SHELL_EDGE_TOP, TRUE);
  gtk_layer_set_margin(window_.gobj(), GTK_LAYER_SHELL_EDGE_LEFT, left);
  gtk_layer_set_margin(window_.gobj(), GTK_LAYER_SHELL_EDGE_TOP, top);
  // Counted from the edges of the screen, not from those of its panels.
  gtk_layer_set_exclusive_zone(window_.gobj(), -1);
  gtk_layer_set_keyboard_mode(window_.gobj(), GTK_LAYER_SHELL_KEYBOARD_MODE_EXCLUSIVE);
  window_.set_app_paintable(true);
  window_.set_size_request(1, 1);
  window_.signal_focus_in_event().connect([this](GdkEventFocus*) {
    tell();
    return false;
  });
  window_.show();
  patience_ = Glib::signal_timeout().connect(
      [this] {
        tell();
        return false;
      },
      patience);
}

MenuAnchor::~MenuAnchor() { patience_.disconnect(); }

void MenuAnchor::tell() {
  patience_.disconnect();
  if (const auto ready = std::exchange(ready_, nullptr)) ready();
}

}  // namespace tavelle
