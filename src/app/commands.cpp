#include "app/commands.h"

#include <cstdint>
#include <functional>
#include <string>

#include "app/controller.h"
#include "library/listing.h"
#include "platform/application.h"
#include "platform/platform.h"

namespace tavelle {
namespace {

void showNamed(Controller& controller, const TextOrder& order, const std::string& name) {
  if (const auto wallpaper = findNamed(controller.wallpapers(), name, order)) {
    controller.show(*wallpaper);
  } else {
    controller.log("no wallpaper named " + name);
  }
}

}  // namespace

void offerCommands(const Platform& platform, Controller& controller) {
  Application& application = platform.application;
  const TextOrder& order = platform.textOrder;
  using None = std::function<void()>;
  using Text = std::function<void(const std::string&)>;
  using Integer = std::function<void(std::int64_t)>;
  using Real = std::function<void(double)>;
  application.offer(
      {"show", Text([&controller, &order](const std::string& name) { showNamed(controller, order, name); })});
  application.offer({"show-folder", None([&] { controller.showFolder(); })});
  application.offer({"toggle-pause", None([&] { controller.togglePause(); })});
  application.offer({"frame-rate", Integer([&](std::int64_t rate) { controller.chooseFrameRate(rate); })});
  application.offer({"resolution", Real([&](double scale) { controller.chooseResolution(scale); })});
  application.offer({"quit", None([&] { controller.quit(); })});
}

}  // namespace tavelle
