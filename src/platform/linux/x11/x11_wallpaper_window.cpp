#include "platform/linux/x11/x11_wallpaper_window.h"

// gtkmm has to come before the macros of X11.
// clang-format off
#include <gtkmm/window.h>
#include <gdk/gdkx.h>
// clang-format on

#include "platform/linux/toolkit/wallpaper_surface.h"
#include "platform/linux/x11/desktop_icons.h"

namespace tavelle {
namespace {

class X11WallpaperWindow final : public WallpaperWindow {
 public:
  X11WallpaperWindow(const Screen& screen, const Monitors& monitors, DesktopIcons& icons)
      : display_(monitors.display()), place_(gdkPlace(screen, monitors)) {
    window_.set_type_hint(Gdk::WINDOW_TYPE_HINT_DESKTOP);
    window_.set_skip_taskbar_hint(true);
    window_.set_skip_pager_hint(true);
    window_.set_keep_below(true);
    window_.stick();
    // A size request, not a mere default: no window manager may make the window smaller than its screen.
    window_.set_size_request(place_.width, place_.height);
    window_.set_default_size(place_.width, place_.height);
    window_.move(place_.x, place_.y);
    window_.signal_realize().connect([this] { prepareSurface(); });
    // Some window managers give the frame that they put around a window its shape only when they see it change.
    window_.signal_map_event().connect([this](GdkEventAny*) {
      window_.letClicksThrough();
      return false;
    });
    gtk_widget_realize(GTK_WIDGET(window_.gobj()));
    icons_ = icons.keepInSight(static_cast<xcb_window_t>(gdk_x11_window_get_xid(window_.get_window()->gobj())));
  }

  void setContent(WebView& content) override { window_.fillWith(content); }

  void orderFront() override {
    gtk_widget_show_all(GTK_WIDGET(window_.gobj()));
    window_.move(place_.x, place_.y);
    GdkWindow* const surface = window_.get_window()->gobj();
    // Where nothing keeps desktop windows below the others, the front would be in front of them.
    if (managerKnowsDesktopWindows()) {
      gdk_window_raise(surface);
    } else {
      gdk_window_lower(surface);
    }
  }

  void orderOut() override { window_.hide(); }
  bool isVisible() const override { return window_.get_visible(); }

 private:
  /// Where the screen lies in GDK's own coordinates.
  static GdkRectangle gdkPlace(const Screen& screen, const Monitors& monitors) {
    const PixelSpace space = monitors.pixelSpace();
    return {static_cast<int>(space.originX + screen.bounds.x), static_cast<int>(space.originY + screen.bounds.y),
            static_cast<int>(screen.bounds.width), static_cast<int>(screen.bounds.height)};
  }

  bool managerKnowsDesktopWindows() const {
    return gdk_x11_screen_supports_net_wm_hint(gdk_display_get_default_screen(display_),
                                               gdk_atom_intern_static_string("_NET_WM_WINDOW_TYPE_DESKTOP"));
  }

  void prepareSurface() {
    const auto surface = window_.get_window();
    // The server itself fills what nobody has painted yet, from the moment the window appears.
    Display* const display = gdk_x11_display_get_xdisplay(display_);
    XSetWindowBackground(display, gdk_x11_window_get_xid(surface->gobj()), BlackPixel(display, 0));
    // The toolkit takes values of 32 bits as numbers of C's own size.
    constexpr gulong anything = 1;
    gdk_property_change(surface->gobj(), gdk_atom_intern_static_string(wallpaperMark.data()),
                        gdk_atom_intern_static_string("CARDINAL"), 32, GDK_PROP_MODE_REPLACE,
                        reinterpret_cast<const guchar*>(&anything), 1);
  }

  GdkDisplay* const display_;
  const GdkRectangle place_;
  WallpaperSurface window_;
  Registration icons_;
};

}  // namespace

std::unique_ptr<WallpaperWindow> X11WallpaperWindows::make(const Screen& screen) {
  return std::make_unique<X11WallpaperWindow>(screen, monitors_, icons_);
}

}  // namespace tavelle
