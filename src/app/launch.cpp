#include "app/launch.h"

#include <algorithm>

#include "app/controller.h"
#include "platform/screens.h"
#include "platform/text_order.h"
#include "platform/user_defaults.h"

namespace tavelle {

std::optional<Wallpaper> initialWallpaper(const std::vector<Wallpaper>& all, const std::optional<std::string>& stored,
                                          const TextOrder& order) {
  for (const auto& wanted : {stored, std::optional<std::string>("Starship Liftoff")}) {
    if (!wanted) continue;
    const auto found = std::find_if(
        all.begin(), all.end(),
        [&, name = order.canonical(*wanted)](const Wallpaper& each) { return order.canonical(each.name()) == name; });
    if (found != all.end()) return *found;
  }
  return all.empty() ? std::nullopt : std::optional(all.front());
}

void Controller::applicationDidFinishLaunching() {
  settingsTrouble_ = platform_.defaults.onTrouble([this](const std::string& trouble) { log("settings: " + trouble); });
  seedLibraryIfEmpty();
  restoreWallpaper();
  log("launched, showing: " + (current_ ? current_->name() : "nothing"));
  buildWindows();
  screenObserver_ = platform_.screens.onChange([this] { screensChanged(); });
}

void Controller::restoreWallpaper() {
  current_ = initialWallpaper(wallpapers(), platform_.defaults.string("wallpaper"), platform_.textOrder);
  if (current_) remember(*current_);
}

}  // namespace tavelle
