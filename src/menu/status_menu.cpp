#include <cmath>
#include <string>

#include "menu/wallpaper_list_view.h"
#include "model/controller.h"
#include "model/settings_keys.h"
#include "platform/alerts.h"
#include "platform/login_item.h"
#include "platform/status_item.h"
#include "platform/user_defaults.h"
#include "playback/frame_settings.h"

namespace tavelle {
namespace {

constexpr double preferredPosition = 365.0;

/// So far a stored scale may lie from one of the menu's and still count as that one.
constexpr double scaleTolerance = 0.001;

MenuItem separator() { return {.kind = MenuItem::Kind::separator}; }

MenuItem note(const char* text) { return {.title = text}; }

}  // namespace

void Controller::createStatusItem() {
  if (!platform_.defaults.value(keys::statusItemPosition))
    platform_.defaults.set(keys::statusItemPosition, preferredPosition);
  statusItem_ = platform_.statusItems.make([this](MenuItems& menu) { menuNeedsUpdate(menu); });
}

void Controller::menuNeedsUpdate(MenuItems& menu) {
  const auto all = wallpapers();
  menu.clear();
  menu.push_back({.kind = MenuItem::Kind::heading, .title = "Wallpapers"});
  menu.push_back({.kind = MenuItem::Kind::list, .list = listView(all, false)});
  menu.push_back(separator());
  menu.push_back({.title = "Add Wallpaper…", .action = [this] { addWallpaper(); }});
  menu.push_back({.title = "Delete Wallpaper", .submenu = deleteMenu(all)});
  menu.push_back({.title = "Show Wallpapers Folder", .action = [this] { showFolder(); }});
  menu.push_back(separator());
  menu.push_back({.title = paused_ ? "Resume Animation" : "Pause Animation", .action = [this] { togglePause(); }});
  menu.push_back({.title = "Frame Rate", .submenu = frameRateMenu()});
  menu.push_back({.title = "Resolution", .submenu = resolutionMenu()});
  menu.push_back({.title = "Open at Login",
                  .action = [this] { toggleLogin(); },
                  .checked = platform_.loginItem.status() == LoginItemStatus::enabled});
  menu.push_back(separator());
  menu.push_back({.title = "How to Use…", .action = [this] { showGuide(); }});
  menu.push_back({.title = "Quit Tavelle", .action = [this] { quit(); }});
}

std::shared_ptr<WallpaperListView> Controller::listView(const std::vector<Wallpaper>& all, bool expanded) {
  return WallpaperListView::make({.all = all, .quick = quickList(all), .current = current_, .expanded = expanded},
                                 pending_, [this](const Wallpaper& wallpaper) { show(wallpaper); });
}

MenuItems Controller::deleteMenu(const std::vector<Wallpaper>& all) {
  MenuItems menu;
  for (const Wallpaper& wallpaper : all) {
    menu.push_back({.title = wallpaper.name(), .action = [this, wallpaper] { deleteWallpaper(wallpaper); }});
  }
  if (menu.empty()) menu.push_back(note("No Wallpapers"));
  return menu;
}

MenuItems Controller::frameRateMenu() {
  MenuItems menu;
  const std::int64_t inForce = frameSettings().frameRate;
  for (const std::int64_t rate : frameRates) {
    menu.push_back({.title = std::to_string(rate) + " FPS",
                    .action = [this, rate] { chooseFrameRate(rate); },
                    .checked = rate == inForce});
  }
  menu.push_back(separator());
  menu.push_back(note("Lower uses less battery"));
  return menu;
}

MenuItems Controller::resolutionMenu() {
  MenuItems menu;
  const double inForce = frameSettings().resolutionScale;
  for (const auto& [title, scale] : resolutions) {
    menu.push_back({.title = title,
                    .action = [this, scale = scale] { chooseResolution(scale); },
                    .checked = std::abs(scale - inForce) < scaleTolerance});
  }
  menu.push_back(separator());
  menu.push_back(note("Lower is softer and uses less battery"));
  return menu;
}

void Controller::openMenu() {
  pending_.soon([this] {
    if (statusItem_) statusItem_->performClick();
  });
}

void Controller::toggleLogin() {
  LoginItem& item = platform_.loginItem;
  const bool on = item.status() == LoginItemStatus::enabled;
  if (const auto done = on ? item.unregister() : item.registerApplication(); !done) {
    const std::string& reason = done.error().description;
    log("open at login failed: " + reason);
    platform_.alerts.run(
        {.message = "Couldn't turn on Open at Login",
         .information = "Add Tavelle in System Settings > General > Login Items instead.\n\n" + reason});
    return;
  }
  log(std::string("open at login: ") + (item.status() == LoginItemStatus::enabled ? "true" : "false"));
}

}  // namespace tavelle
