#pragma once

#include <plist/plist.h>

#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "base/wall_time.h"

namespace tavelle {

// What the wallpaper store holds, of which this is all that the program knows:
//
//   store   SystemDefault: entry
//           AllSpacesAndDisplays: entry
//           Displays: {a display's name: entry}
//           Spaces: {a Space's name: {Default: entry, Displays: {a display's name: entry}}}
//   entry   Type: "individual", or "linked" when Linked holds a record for the desktop and the idle screen alike
//           Desktop: record
//           Idle, Linked: left to others
//   record  Content: {Choices: [{Configuration: data, Files: [], Provider: text}], Shuffle: text}
//           LastSet, LastUse: date
//
// The configuration is a list within the list, {type: text, url: {relative: address}}. Any of this may be missing or be
// something else, and there is more beside it, which stays as it is.

/// What an entry shows.
struct ShownImage {
  std::string address;
  /// When the entry was set, in seconds since the beginning of 2001; 0 when it does not say.
  double setAt = 0;
};

/// The image that a display shows: that of its own entry, else that of the entry for all, else the system's.
std::optional<ShownImage> imageOfDisplay(plist_t root, const std::string& display);

/// Makes a display's own entry show the image at this address, set at this time. Whether it does: not when the store
/// has something else in its place, or when the address has no form in a property list.
bool setImageOfDisplay(plist_t root, const std::string& display, const std::string& imageAddress, WallTime now);

/// Makes every entry of the store show the image at this address, and touches nothing else. Whether any did not yet.
/// After an error the list is of no use: the address has no form in a property list, or so many entries would get
/// copies of so big a content that there might be no memory for them.
Result<bool> setImageEverywhere(plist_t root, const std::string& imageAddress, WallTime now);

/// Adds what a store lacks: the entry for all Spaces and displays, an entry for each of these displays, and for each of
/// these Spaces one of its own with each display. New ones are copies of the entry for all; where there is none they
/// show nothing. What is there stays as it is. Whether anything was added.
bool completeStore(plist_t root, const std::vector<std::string>& displays, const std::vector<std::string>& spaces,
                   WallTime now);

}  // namespace tavelle
