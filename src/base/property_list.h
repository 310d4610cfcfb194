#pragma once

#include <plist/plist.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "base/wall_time.h"

namespace tavelle {

struct FreePlist {
  void operator()(void* node) const { plist_free(node); }
};

/// A property list, or a part that belongs to none.
using PlistPtr = std::unique_ptr<void, FreePlist>;

/// The property list that `bytes` hold, as XML or in the binary form. Null when they hold none, and when reading them
/// would not be safe (see plist_guard.h): more than 512 levels of nesting, references that unfold to more than 256 MB
/// or to 32 values for each byte of the file, or text that is not valid.
PlistPtr parsedPlist(std::string_view bytes);

/// The same, when it is a dictionary.
PlistPtr parsedDictionary(std::string_view bytes);

/// The property list as XML.
Result<std::string> xmlPlist(plist_t node);

/// The property list in the binary form, version 1.0.
Result<std::string> binaryPlist(plist_t node);

/// The node when it is of that type, else null.
plist_t ofType(plist_t node, plist_type type);

/// The text of a string node; none for any other.
std::optional<std::string> plistText(plist_t node);

/// The value under a key of a dictionary that is of that type; null when there is none, also when `node` is null or no
/// dictionary. It belongs to the dictionary.
plist_t plistItem(plist_t node, const char* key, plist_type type);

/// The values of a dictionary, which they belong to; none when `node` is null or no dictionary.
std::vector<plist_t> plistValues(plist_t node);

/// A date; the fraction of a microsecond is cut off.
PlistPtr plistDate(WallTime time);

/// Puts a value, made for this, under a key of a dictionary; one that was there is freed.
void setPlistItem(plist_t dictionary, const char* key, PlistPtr value);

}  // namespace tavelle
