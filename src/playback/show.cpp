
#include "model/controller.h"
#include "model/settings_keys.h"
#include "platform/desktop_picture.h"
#include "platform/screens.h"
#include "platform/user_defaults.h"
#include "platform/wallpaper_window.h"
#include "platform/web_view.h"

namespace tavelle {

void Controller::show(const Wallpaper& wallpaper) {
  current_ = wallpaper;
  platform_.defaults.set(keys::wallpaper, wallpaper.name());
  remember(wallpaper);
  for (std::size_t i = 0; i < shownScreens(); ++i) {
    const ShownScreen screen = shownScreen(i);
    load(*screen.webView);
    if (!screen.window.isVisible()) screen.window.orderFront();
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

void Controller::showAnother() {
  const auto all = wallpapers();
  const auto likely = quickList(all);
  if (!likely.empty()) return show(likely.front());
  if (!all.empty()) return show(all.front());
  current_.reset();
  platform_.defaults.remove(keys::wallpaper);
  for (std::size_t i = 0; i < shownScreens(); ++i) shownScreen(i).window.orderOut();
}

}  // namespace tavelle
