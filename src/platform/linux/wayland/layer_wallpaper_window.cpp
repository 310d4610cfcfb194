#include "platform/linux/wayland/layer_wallpaper_window.h"

#include <gtk-layer-shell.h>

#include <utility>

#include "platform/linux/handles.h"
#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/toolkit/wallpaper_surface.h"

namespace tavelle {
namespace {

class LayerWallpaperWindow final : public WallpaperWindow {
 public:
  LayerWallpaperWindow(Screen screen, Monitors& monitors)
      : screen_(std::move(screen)), monitors_(monitors), monitorsChanged_(monitors.onChange([this] { appear(); })) {
    gtk_layer_init_for_window(window_.gobj());
    // By this name KWin knows that it is no ordinary window, for its overview and while it shows the desktop.
    gtk_layer_set_namespace(window_.gobj(), "desktop");
    gtk_layer_set_layer(window_.gobj(), GTK_LAYER_SHELL_LAYER_BACKGROUND);
    for (const auto edge : {GTK_LAYER_SHELL_EDGE_LEFT, GTK_LAYER_SHELL_EDGE_RIGHT, GTK_LAYER_SHELL_EDGE_TOP,
                            GTK_LAYER_SHELL_EDGE_BOTTOM}) {
      gtk_layer_set_anchor(window_.gobj(), edge, TRUE);
    }
    // Under the panels as well: they take nothing away from it.
    gtk_layer_set_exclusive_zone(window_.gobj(), -1);
    gtk_layer_set_keyboard_mode(window_.gobj(), GTK_LAYER_SHELL_KEYBOARD_MODE_NONE);
    // The compositor takes the surface away with its output.
    window_.signal_delete_event().connect([this](GdkEventAny*) {
      window_.hide();
      return true;
    });
  }

  void setContent(WebView& content) override {
    window_.fillWith(content);
    // The compositor tells the size when the surface appears; the page may want to know it before.
    GdkRectangle place{0, 0, static_cast<int>(screen_.bounds.width), static_cast<int>(screen_.bounds.height)};
    GtkWidget* const page = gtk_bin_get_child(GTK_BIN(window_.gobj()));
    gtk_widget_show(page);
    gtk_widget_size_allocate(page, &place);
  }

  void orderFront() override {
    wanted_ = true;
    // The surface that has come last is the front of its layer.
    window_.hide();
    appear();
  }

  void orderOut() override {
    wanted_ = false;
    window_.hide();
  }

  bool isVisible() const override { return window_.get_visible(); }

 private:
  /// A surface belongs to its output, wherever that goes, and goes with it. Outputs may come, go and change places
  /// without any screen having changed in the end.
  void appear() {
    GdkMonitor* const monitor = monitors_.of(screen_);
    // Left to itself, the compositor would show the surface on another output.
    if (!wanted_ || !monitor || (isVisible() && monitor == monitor_.get())) return;
    window_.hide();
    monitor_ = retain(monitor);
    gtk_layer_set_monitor(window_.gobj(), monitor);
    window_.show_all();
  }

  const Screen screen_;
  Monitors& monitors_;
  bool wanted_ = false;
  /// That of the surface.
  GObjectPtr<GdkMonitor> monitor_;
  WallpaperSurface window_;
  const Registration monitorsChanged_;
};

}  // namespace

std::unique_ptr<WallpaperWindow> LayerWallpaperWindows::make(const Screen& screen) {
  return std::make_unique<LayerWallpaperWindow>(screen, monitors_);
}

}  // namespace tavelle
