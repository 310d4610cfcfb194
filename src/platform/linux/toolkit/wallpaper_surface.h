#pragma once

#include <gtkmm/window.h>

#include "platform/web_view.h"

namespace tavelle {

/// What wallpaper windows have in common on all display servers: a black background behind the page, and no part that
/// takes clicks.
class WallpaperSurface : public Gtk::Window {
 public:
  WallpaperSurface();
  WallpaperSurface(const WallpaperSurface&) = delete;
  WallpaperSurface& operator=(const WallpaperSurface&) = delete;
  ~WallpaperSurface() override = default;

  /// Fills the window with `content`.
  void fillWith(WebView& content);
  void letClicksThrough();
};

}  // namespace tavelle
