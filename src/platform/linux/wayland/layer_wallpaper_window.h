#pragma once

#include "platform/wallpaper_window.h"

namespace tavelle {

class Monitors;

/// Surfaces on the background layer of a Wayland compositor (wlr-layer-shell), below all windows.
class LayerWallpaperWindows final : public WallpaperWindows {
 public:
  /// `monitors` outlives the windows.
  explicit LayerWallpaperWindows(Monitors& monitors) : monitors_(monitors) {}

  std::unique_ptr<WallpaperWindow> make(const Screen& screen) override;

 private:
  Monitors& monitors_;
};

}  // namespace tavelle
