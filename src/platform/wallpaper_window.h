#pragma once

#include <memory>

#include "platform/screens.h"

namespace tavelle {

class WebView;

/// A window that covers one screen just above the desktop picture, below everything else. It has no border, no shadow
/// and a black background, lies on every workspace, is in no window list, never takes the focus, lets every click
/// through, and stays exactly where it is put. It starts off screen. Main thread only.
class WallpaperWindow {
 public:
  virtual ~WallpaperWindow() = default;

  /// Fills the window with `content`, which follows its size. Either may be destroyed first.
  virtual void setContent(WebView& content) = 0;
  /// Brings the window on screen, to the front of its own level.
  virtual void orderFront() = 0;
  /// Takes the window off screen; it can be brought back.
  virtual void orderOut() = 0;
  virtual bool isVisible() const = 0;
};

/// Makes wallpaper windows. Main thread only.
class WallpaperWindows {
 public:
  virtual ~WallpaperWindows() = default;

  /// A window over the whole of `screen`, not yet on screen.
  virtual std::unique_ptr<WallpaperWindow> make(const Screen& screen) = 0;
};

}  // namespace tavelle
