#pragma once

#include <plist/plist.h>

#include <string>
#include <vector>

#include "base/property_list.h"
#include "base/wall_time.h"

namespace tavelle {

/// Adds what a store lacks: the entry for all Spaces and displays, an entry for each of these displays, and for each of
/// these Spaces one of its own with each display. New ones are copies of the entry for all; where there is none they
/// show nothing. What is there stays as it is. Whether anything was added.
bool completeStore(plist_t root, const std::vector<std::string>& displays, const std::vector<std::string>& spaces,
                   WallTime now);

/// The entry that says what a display shows: its own, else that for all, else the system's; null when none of them
/// shows an image.
plist_t entryOfDisplay(plist_t root, const std::string& display);

/// Makes the entry of a display show the image at this address, set at this time. Its own entry then; null when the
/// store has something else in its place.
plist_t setEntryOfDisplay(plist_t root, const std::string& display, const std::string& imageAddress, WallTime now);

/// When an entry was set, in seconds since the beginning of 2001; 0 when it does not say.
double timeOfEntry(plist_t entry);

}  // namespace tavelle
