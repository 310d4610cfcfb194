#pragma once

#include "platform/wallpaper_window.h"

namespace tavelle {

class Screens;

/// Surfaces on the background layer of a Wayland compositor (wlr-layer-shell), below all windows.
class LayerWallpaperWindows final : public WallpaperWindows {
 public:
  /// `screens` outlives the windows.
  explicit LayerWallpaperWindows(Screens& screens) : screens_(screens) {}

  std::unique_ptr<WallpaperWindow> make(const Screen& screen) override;

 private:
  Screens& screens_;
};

}  // namespace tavelle
