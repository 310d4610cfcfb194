#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "library/listing.h"
#include "model/controller.h"
#include "model/settings_keys.h"
#include "platform/screens.h"
#include "platform/shared_desktop.h"
#include "platform/text_order.h"
#include "platform/user_defaults.h"

namespace tavelle {
namespace {

constexpr std::chrono::milliseconds launchSyncDelay{2000};

/// The wallpaper to start with: the one of `all` that is named `stored`, else the one that the program comes with, else
/// the first; none when `all` is empty.
std::optional<Wallpaper> initialWallpaper(const std::vector<Wallpaper>& all, const std::optional<std::string>& stored,
                                          const TextOrder& order) {
  auto found = stored ? findNamed(all, *stored, order) : std::nullopt;
  if (!found) found = findNamed(all, "Starship Liftoff", order);
  if (found) return found;
  return all.empty() ? std::nullopt : std::optional(all.front());
}

}  // namespace

void Controller::applicationDidFinishLaunching() {
  keep(platform_.defaults.onTrouble([this](const std::string& trouble) { log("settings: " + trouble); }));
  keep(platform_.sharedDesktop.onTrouble([this](const std::string& trouble) { log("desktop: " + trouble); }));
  seedLibraryIfEmpty();
  restoreWallpaper();
  log("launched, showing: " + (current_ ? current_->name() : "nothing"));
  // Makes the wallpaper store while the windows are built.
  startAgent();
  buildWindows();
  createStatusItem();
  keep(platform_.screens.onChange([this] { screensChanged(); }));
  startCoverageWatch();
  syncSpacesAtLaunch();
  showGuideAtFirstLaunch();
}

void Controller::keep(Registration observer) { observers_.push_back(std::move(observer)); }

void Controller::syncSpacesAtLaunch() {
  const auto still = current_ ? current_->still(platform_.files, platform_.textOrder) : std::nullopt;
  if (still) scheduleSpacesSync(*still, launchSyncDelay);
}

void Controller::restoreWallpaper() {
  current_ = initialWallpaper(wallpapers(), platform_.defaults.string(keys::wallpaper), platform_.textOrder);
  if (current_) remember(*current_);
}

}  // namespace tavelle
