#include "desktop_picture/wallpaper_agent.h"

#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "base/file_uri.h"
#include "desktop_picture/store_entries.h"
#include "platform/clock.h"
#include "platform/desktop_picture.h"
#include "platform/main_loop.h"
#include "platform/screens.h"
#include "platform/spaces.h"
#include "platform/user_defaults.h"

namespace tavelle {
namespace {

/// Monitors come and go in bursts.
constexpr std::chrono::milliseconds settlingTime{500};

/// Times of entries come back from the memory rounded. No two settings follow each other so fast.
constexpr double sameTime = 0.001;

/// Under this and a screen's name stands the time of the entry that the agent last brought onto it.
constexpr std::string_view appliedKey = "applied to ";

std::string keyOf(const std::string& screen) { return std::string(appliedKey) + screen; }

}  // namespace

WallpaperAgent::WallpaperAgent(AgentServices services)
    : services_(std::move(services)), store_(services_.files, services_.store) {}

void WallpaperAgent::start() {
  screenObserver_ = services_.screens.onChange([this] { changed(); });
  spaceObserver_ = services_.spaces.onChange([this] { changed(); });
  bringUpToDate();
}

void WallpaperAgent::changed() {
  update_ = services_.mainLoop.after(settlingTime, [this] { bringUpToDate(); });
}

void WallpaperAgent::bringUpToDate() {
  const auto screens = services_.screens.list();
  const auto spaces = services_.spaces.list();
  std::vector<std::string> displays;
  displays.reserve(screens.size());
  for (const Screen& screen : screens) displays.push_back(screen.name);
  std::vector<std::pair<Screen, ShownImage>> wanted;
  // What cannot be written now is tried again with the next change.
  static_cast<void>(store_.change(WallpaperStore::IfMissing::make, [&](plist_t root) {
    const bool added = completeStore(root, displays, spaces, services_.clock.now());
    for (const Screen& screen : screens) {
      if (auto image = imageOfDisplay(root, screen.name)) wanted.emplace_back(screen, *std::move(image));
    }
    return added;
  }));
  for (const auto& [screen, image] : wanted) apply(image, screen);
}

void WallpaperAgent::apply(const ShownImage& wanted, const Screen& screen) {
  const auto image = filePath(wanted.address);
  if (!image) return;
  // What the screen shows since the entry was brought onto it is either that or the user's own choice. An older entry
  // is another one: somebody has put an earlier store back, or the clock.
  const bool applied = services_.memory.value(keyOf(screen.name)).has_value() &&
                       std::abs(wanted.setAt - services_.memory.real(keyOf(screen.name))) < sameTime;
  if (applied && services_.desktopPicture.current(screen)) return;
  if (services_.desktopPicture.set(*image, screen)) services_.memory.set(keyOf(screen.name), wanted.setAt);
}

void WallpaperAgent::pictureWasSet(const std::string& imageAddress, const std::string& screen) {
  std::optional<ShownImage> noted;
  const auto written = store_.change(WallpaperStore::IfMissing::make, [&](plist_t root) {
    if (setImageOfDisplay(root, screen, imageAddress, services_.clock.now())) noted = imageOfDisplay(root, screen);
    return noted.has_value();
  });
  // Only along with the store: its entry, which would be the older one, must not look like a new wish later.
  if (written && noted) services_.memory.set(keyOf(screen), noted->setAt);
}

}  // namespace tavelle
