#pragma once

#include <plist/plist.h>

#include <filesystem>
#include <functional>
#include <string>

#include "base/property_list.h"
#include "platform/clock.h"

namespace tavelle {

class Clock;
class Files;
class Processes;

/// The desktop record of a store entry that shows the image at this address; `content` is the content dictionary to
/// start from, or null. An error when the address has no form in a property list.
Result<PlistPtr> desktopRecord(const std::string& imageAddress, plist_t content, WallTime now);

/// The address of the image that a store entry shows, if it shows one.
std::optional<std::string> shownImage(plist_t entry);

/// The file in the user's home folder that says which picture every display shows on every workspace.
std::filesystem::path wallpaperStore(const std::filesystem::path& home);

/// What the sync needs from outside. The services outlive it.
struct StoreServices {
  Clock& clock;
  Files& files;
  Processes& processes;
  /// See `wallpaperStore`.
  std::filesystem::path store;
};

/// Makes the still image the picture of every display on every workspace, in the store, and has the agent that applies
/// the store start again. `still` is absolute; it need not exist. Gives `log` one line for what happened, unless all
/// was as it should be. Whether the store was changed. Blocks. The store is either as before or as after, whatever
/// happens.
bool syncAllSpaces(const std::filesystem::path& still, const StoreServices& services,
                   const std::function<void(const std::string&)>& log);

}  // namespace tavelle
