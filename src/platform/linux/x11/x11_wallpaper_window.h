#pragma once

#include <string_view>

#include "platform/linux/toolkit/monitors.h"
#include "platform/wallpaper_window.h"

namespace tavelle {

class X11SharedDesktop;

/// Every wallpaper window has a property of this name, in whatever process.
inline constexpr std::string_view wallpaperMark = "_TAVELLE_WALLPAPER";

/// Windows that are part of the desktop, which window managers keep below all others.
class X11WallpaperWindows final : public WallpaperWindows {
 public:
  /// Both must outlive the windows.
  X11WallpaperWindows(const Monitors& monitors, X11SharedDesktop& desktop) : monitors_(monitors), desktop_(desktop) {}

  std::unique_ptr<WallpaperWindow> make(const Screen& screen) override;

 private:
  const Monitors& monitors_;
  X11SharedDesktop& desktop_;
};

}  // namespace tavelle
