#include "platform/linux/x11/x11_wallpaper_window.h"

// gtkmm has to come before the macros of X11.
// clang-format off
#include <gtkmm/window.h>
#include <gdk/gdkx.h>
// clang-format on

#include "platform/linux/toolkit/wallpaper_surface.h"
#include "platform/linux/x11/x11_shared_desktop.h"

namespace tavelle {
namespace {

class X11WallpaperWindow final : public WallpaperWindow {
 public:
  X11WallpaperWindow(const Screen& screen, const Monitors& monitors, X11SharedDesktop& desktop)
      : display_(monitors.display()),
        place_(gdkPlace(screen, monitors)),
        desktop_(desktop),
        managerChanged_(g_signal_connect_swapped(gdk_display_get_default_screen(display_), "window-manager-changed",
                                                 G_CALLBACK(followManager), this)) {
    gtk_window_set_type_hint(window_.gobj(), desktop.stacking().type);
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
    shared_ = desktop.share(static_cast<xcb_window_t>(gdk_x11_window_get_xid(window_.get_window()->gobj())));
  }

  X11WallpaperWindow(const X11WallpaperWindow&) = delete;
  X11WallpaperWindow& operator=(const X11WallpaperWindow&) = delete;
  ~X11WallpaperWindow() override {
    g_signal_handler_disconnect(gdk_display_get_default_screen(display_), managerChanged_);
  }

  void setContent(WebView& content) override { window_.fillWith(content); }

  void orderFront() override {
    gtk_widget_show_all(GTK_WIDGET(window_.gobj()));
    window_.move(place_.x, place_.y);
    GdkWindow* const surface = window_.get_window()->gobj();
    // Where nothing keeps desktop windows below the others, the front would be in front of them.
    if (!managerKnowsDesktopWindows()) {
      gdk_window_lower(surface);
    } else if (desktop_.stacking().canRaise) {
      gdk_window_raise(surface);
    }
  }

  void orderOut() override { window_.hide(); }
  bool isVisible() const override { return window_.get_visible(); }

 private:
  /// Managers look at a window's type when it appears.
  static void followManager(X11WallpaperWindow* self) {
    const GdkWindowTypeHint type = self->desktop_.stacking().type;
    if (type == gtk_window_get_type_hint(self->window_.gobj())) return;
    const bool visible = self->isVisible();
    self->orderOut();
    gtk_window_set_type_hint(self->window_.gobj(), type);
    gdk_window_set_type_hint(self->window_.get_window()->gobj(), type);
    if (visible) self->orderFront();
  }

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
    // MATE's compositor gives docks a shadow, and keeps it when they get a shape later. It would darken the icons.
    if (desktop_.stacking().type == GDK_WINDOW_TYPE_HINT_DOCK) {
      surface->shape_combine_region(Cairo::Region::create({0, 0, place_.width, place_.height}), 0, 0);
    }
    // The toolkit takes values of 32 bits as numbers of C's own size.
    constexpr gulong anything = 1;
    gdk_property_change(surface->gobj(), gdk_atom_intern_static_string(wallpaperMark.data()),
                        gdk_atom_intern_static_string("CARDINAL"), 32, GDK_PROP_MODE_REPLACE,
                        reinterpret_cast<const guchar*>(&anything), 1);
  }

  GdkDisplay* const display_;
  const GdkRectangle place_;
  X11SharedDesktop& desktop_;
  const gulong managerChanged_;
  WallpaperSurface window_;
  Registration shared_;
};

}  // namespace

std::unique_ptr<WallpaperWindow> X11WallpaperWindows::make(const Screen& screen) {
  return std::make_unique<X11WallpaperWindow>(screen, monitors_, desktop_);
}

}  // namespace tavelle
