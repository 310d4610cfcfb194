#include "playback/show.h"

#include "model/controller.h"
#include "platform/desktop_picture.h"
#include "platform/screens.h"
#include "platform/user_defaults.h"
#include "platform/wallpaper_window.h"

namespace tavelle {

void Controller::show(const Wallpaper& wallpaper) {
  current_ = wallpaper;
  platform_.defaults.set(wallpaperKey, wallpaper.name());
  remember(wallpaper);
  for (const auto& webView : webViews_) load(*webView);
  for (const auto& window : windows_) {
    if (!window->isVisible()) window->orderFront();
  }
  if (const auto still = wallpaper.still(platform_.files, platform_.textOrder)) {
    for (const Screen& screen : platform_.screens.list()) {
      if (const auto set = platform_.desktopPicture.set(*still, screen); !set) {
        log("couldn't set the System Settings wallpaper: " + set.error().description);
      }
    }
    scheduleSpacesSync(*still);
  }
  log("showing " + wallpaper.name());
}

}  // namespace tavelle
