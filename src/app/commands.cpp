#include "app/commands.h"

#include <cstdint>
#include <functional>
#include <string>

#include "library/listing.h"
#include "model/controller.h"
#include "platform/application.h"
#include "platform/platform.h"

namespace tavelle {
namespace {

using WallpaperAction = void (Controller::*)(const Wallpaper&);

/// A command that does something to the wallpaper of a name.
std::function<void(const std::string&)> withNamed(Controller& controller, const TextOrder& order,
                                                  WallpaperAction action) {
  return [&controller, &order, action](const std::string& name) {
    if (const auto wallpaper = findNamed(controller.wallpapers(), name, order)) {
      (controller.*action)(*wallpaper);
    } else {
      controller.log("no wallpaper named " + name);
    }
  };
}

}  // namespace

void offerCommands(const Platform& platform, Controller& controller) {
  Application& application = platform.application;
  const TextOrder& order = platform.textOrder;
  using None = std::function<void()>;
  using Integer = std::function<void(std::int64_t)>;
  using Real = std::function<void(double)>;
  application.offer({"show", withNamed(controller, order, &Controller::show)});
  application.offer({"add", None([&] { controller.addWallpaper(); })});
  application.offer({"delete", withNamed(controller, order, &Controller::deleteWallpaper)});
  application.offer({"show-folder", None([&] { controller.showFolder(); })});
  application.offer({"toggle-pause", None([&] { controller.togglePause(); })});
  application.offer({"frame-rate", Integer([&](std::int64_t rate) { controller.chooseFrameRate(rate); })});
  application.offer({"resolution", Real([&](double scale) { controller.chooseResolution(scale); })});
  application.offer({"toggle-login", None([&] { controller.toggleLogin(); })});
  application.offer({"menu", None([&] { controller.openMenu(); })});
  application.offer({"how-to-use", None([&] { controller.showGuide(); })});
  application.offer({"quit", None([&] { controller.quit(); })});
}

}  // namespace tavelle
