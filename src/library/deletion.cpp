#include "library/deletion.h"

#include <ostream>

#include "library/listing.h"
#include "model/controller.h"
#include "platform/alerts.h"
#include "platform/files.h"
#include "platform/text_order.h"
#include "platform/user_defaults.h"
#include "platform/wallpaper_window.h"
#include "platform/web_view.h"
#include "playback/page_scripts.h"
#include "playback/show.h"

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
  if (wasOnShow) showNext();
  return true;
}

void Controller::forget(const std::string& name) {
  auto recents = platform_.defaults.stringArray(recentsKey);
  const std::string gone = platform_.textOrder.canonical(name);
  std::erase_if(recents, [&](const std::string& each) { return platform_.textOrder.canonical(each) == gone; });
  platform_.defaults.set(recentsKey, recents);
}

void Controller::showNext() {
  const auto all = wallpapers();
  const auto likely = quickList(all);
  if (!likely.empty()) return show(likely.front());
  if (!all.empty()) return show(all.front());
  current_.reset();
  platform_.defaults.remove(wallpaperKey);
  for (const auto& window : windows_) window->orderOut();
  // What is left in the hidden windows could still be heard.
  for (const auto& webView : webViews_) webView->evaluate(pauseJS, {});
}

void Controller::takeStoredWallpaper(const std::vector<Wallpaper>& all) {
  current_ = findNamed(all, platform_.defaults.string(wallpaperKey).value_or(""), platform_.textOrder);
}

int deleteNamed(Controller& controller, const std::string& name, const TextOrder& order, std::ostream& out) {
  const auto all = controller.wallpapers();
  controller.takeStoredWallpaper(all);
  const auto wallpaper = findNamed(all, name, order);
  if (!wallpaper) {
    out << "no wallpaper named " << name << '\n';
    return 1;
  }
  out << (controller.trash(*wallpaper) ? "deleted " + wallpaper->name() : "failed") << '\n';
  return 0;
}

}  // namespace tavelle
