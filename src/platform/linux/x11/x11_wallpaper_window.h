#pragma once

#include "platform/wallpaper_window.h"

namespace tavelle {

/// Desktop-type windows of X11, which window managers keep below all others.
class X11WallpaperWindows final : public WallpaperWindows {
 public:
  std::unique_ptr<WallpaperWindow> make(const Screen& screen) override;
};

}  // namespace tavelle
