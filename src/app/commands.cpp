#include "app/commands.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>

#include "app/controller.h"
#include "platform/application.h"

namespace tavelle {
namespace {

void showNamed(Controller& controller, const std::string& name) {
  const auto all = controller.wallpapers();
  const auto found = std::find_if(all.begin(), all.end(), [&](const Wallpaper& each) { return each.name() == name; });
  if (found == all.end()) {
    controller.log("no wallpaper named " + name);
  } else {
    controller.show(*found);
  }
}

}  // namespace

void offerCommands(Application& application, Controller& controller) {
  using None = std::function<void()>;
  using Text = std::function<void(const std::string&)>;
  using Integer = std::function<void(std::int64_t)>;
  using Real = std::function<void(double)>;
  application.offer({"show", Text([&](const std::string& name) { showNamed(controller, name); })});
  application.offer({"show-folder", None([&] { controller.showFolder(); })});
  application.offer({"toggle-pause", None([&] { controller.togglePause(); })});
  application.offer({"frame-rate", Integer([&](std::int64_t rate) { controller.chooseFrameRate(rate); })});
  application.offer({"resolution", Real([&](double scale) { controller.chooseResolution(scale); })});
  application.offer({"quit", None([&] { controller.quit(); })});
}

}  // namespace tavelle
