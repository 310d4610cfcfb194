#include "desktop_picture/wallpaper_agent.h"

#include <cmath>
#include <utility>

#include "base/file_uri.h"
#include "desktop_picture/store_entries.h"
#include "desktop_picture/wallpaper_store.h"
#include "platform/desktop_picture.h"
#include "platform/files.h"
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

WallpaperAgent::WallpaperAgent(AgentServices services) : services_(std::move(services)) {}

void WallpaperAgent::start() {
  screenObserver_ = services_.screens.onChange([this] { changed(); });
  spaceObserver_ = services_.spaces.onChange([this] { changed(); });
  bringUpToDate();
}

void WallpaperAgent::changed() {
  update_ = services_.mainLoop.after(settlingTime, [this] { bringUpToDate(); });
}

void WallpaperAgent::bringUpToDate() {
  const PlistPtr root = readStore();
  if (!root) return;
  const auto screens = services_.screens.list();
  std::vector<std::string> displays;
  displays.reserve(screens.size());
  for (const Screen& screen : screens) displays.push_back(screen.name);
  if (completeStore(root.get(), displays, services_.spaces.list(), services_.clock.now())) {
    // What cannot be written now is tried again with the next change.
    static_cast<void>(writeStore(root.get()));
  }
  for (const Screen& screen : screens) apply(root.get(), screen);
}

void WallpaperAgent::apply(plist_t root, const Screen& screen) {
  plist_t entry = entryOfDisplay(root, screen.name);
  const auto address = shownImage(entry);
  const auto image = address ? filePath(*address) : std::nullopt;
  if (!image) return;
  // What the screen shows since the entry was brought onto it is either that or the user's own choice. An older entry
  // is another one: somebody has put an earlier store back, or the clock.
  const bool applied = services_.memory.value(keyOf(screen.name)).has_value() &&
                       std::abs(timeOfEntry(entry) - services_.memory.real(keyOf(screen.name))) < sameTime;
  if (applied && services_.desktopPicture.current(screen)) return;
  if (services_.desktopPicture.set(*image, screen)) remember(screen.name, entry);
}

void WallpaperAgent::pictureWasSet(const std::string& imageAddress, const std::string& screen) {
  const PlistPtr root = readStore();
  if (!root) return;
  plist_t entry = setEntryOfDisplay(root.get(), screen, imageAddress, services_.clock.now());
  if (!entry) return;
  // Only along with the store: its entry, which would be the older one, must not look like a new wish later.
  if (writeStore(root.get())) remember(screen, entry);
}

void WallpaperAgent::remember(const std::string& screen, plist_t entry) {
  services_.memory.set(keyOf(screen), timeOfEntry(entry));
}

PlistPtr WallpaperAgent::readStore() const {
  if (!services_.files.exists(services_.store)) return PlistPtr(plist_new_dict());
  const auto bytes = services_.files.read(services_.store);
  return bytes ? parsedDictionary(*bytes) : nullptr;
}

bool WallpaperAgent::writeStore(plist_t root) {
  const auto bytes = binaryPlist(root);
  return bytes && services_.files.createFolders(services_.store.parent_path()) &&
         services_.files.write(services_.store, *bytes);
}

}  // namespace tavelle
