#pragma once

#include <functional>
#include <string>

#include "base/registration.h"

namespace tavelle {

/// How wallpapers share a screen with the windows that a file manager or a shell has for the desktop: its icons are
/// seen over the playing page, clicks, rubber bands, menus and drops reach whoever draws them, and nothing covers a
/// wallpaper but what the user put there. What that takes differs between desktops and changes while they run; whoever
/// implements this looks after it. Main thread only.
class SharedDesktop {
 public:
  virtual ~SharedDesktop() = default;

  /// Calls `tell` with a sentence for the user when one of these cannot be had here: what is so, and what to do. Each
  /// such trouble is told once.
  virtual Registration onTrouble(std::function<void(const std::string&)> tell) = 0;
};

}  // namespace tavelle
