#include "library/deletion.h"

#include <ostream>

#include "base/text.h"
#include "library/listing.h"
#include "model/controller.h"
#include "model/settings_keys.h"
#include "platform/alerts.h"
#include "platform/files.h"
#include "platform/text_order.h"
#include "platform/user_defaults.h"

namespace tavelle {

void Controller::deleteWallpaper(const Wallpaper& wallpaper) {
  const Alert alert{.message = "Delete “" + wallpaper.name() + "”?",
                    .information = "It moves to the Trash, so you can put it back from there if you change your mind.",
                    .style = Alert::Style::warning,
                    .buttons = {"Move to Trash", "Cancel"},
                    .icon = wallpaper.still(platform_.files, platform_.textOrder)};
  if (platform_.alerts.run(alert) == 0U) trash(wallpaper);
}

bool Controller::trash(const Wallpaper& wallpaper) {
  const bool wasOnShow = wallpaper.same(current_);
  if (const auto moved = platform_.files.trash(wallpaper.folder.path); !moved) {
    log("couldn't delete " + wallpaper.name() + ": " + moved.error().description);
    platform_.alerts.run(
        {.message = "Couldn't delete “" + wallpaper.name() + "”", .information = moved.error().description});
    return false;
  }
  forget(wallpaper.name());
  log("deleted " + wallpaper.name());
  if (wasOnShow) showAnother();
  return true;
}

void Controller::forget(const std::string& name) {
  auto recents = platform_.defaults.stringArray(keys::recentWallpapers);
  std::erase_if(recents, platform_.textOrder.sameAs(name));
  platform_.defaults.set(keys::recentWallpapers, recents);
}

int deleteNamed(Controller& controller, const std::string& name, const TextOrder& order, std::ostream& out) {
  const auto all = controller.wallpapers();
  controller.takeStoredWallpaper(all);
  // As the shell completes it: a folder's name need not be text.
  const auto wallpaper = findNamed(all, escapedUtf8(name), order);
  if (!wallpaper) {
    out << "no wallpaper named " << name << '\n';
    return 1;
  }
  out << (controller.trash(*wallpaper) ? "deleted " + wallpaper->name() : "failed") << '\n';
  return 0;
}

}  // namespace tavelle
