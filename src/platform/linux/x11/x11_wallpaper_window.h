#pragma once

#include <string_view>

#include "platform/linux/toolkit/monitors.h"
#include "platform/wallpaper_window.h"

namespace tavelle {

class DesktopIcons;

/// Every wallpaper window has a property of this name, in whatever process.
inline constexpr std::string_view wallpaperMark = "_TAVELLE_WALLPAPER";

/// Desktop-type windows of X11, which window managers keep below all others.
class X11WallpaperWindows final : public WallpaperWindows {
 public:
  /// Both must outlive the windows.
  X11WallpaperWindows(const Monitors& monitors, DesktopIcons& icons) : monitors_(monitors), icons_(icons) {}

  std::unique_ptr<WallpaperWindow> make(const Screen& screen) override;

 private:
  const Monitors& monitors_;
  DesktopIcons& icons_;
};

}  // namespace tavelle
