#pragma once

#include "platform/linux/toolkit/monitors.h"
#include "platform/wallpaper_window.h"

namespace tavelle {

/// Desktop-type windows of X11, which window managers keep below all others.
class X11WallpaperWindows final : public WallpaperWindows {
 public:
  explicit X11WallpaperWindows(const Monitors& monitors) : monitors_(monitors) {}

  std::unique_ptr<WallpaperWindow> make(const Screen& screen) override;

 private:
  const Monitors& monitors_;
};

}  // namespace tavelle
