#pragma once

#include <plist/plist.h>

#include <string>
#include <string_view>

#include "platform/linux/handles.h"
#include "platform/result.h"
#include "platform/user_defaults.h"

namespace tavelle {

/// A property list, or a part that belongs to none.
using PlistPtr = std::unique_ptr<void, FreeWith<plist_free>>;

/// What a node of a property list means as a setting.
DefaultsValue defaultsValue(plist_t node);

/// A setting as a node of a property list. `monostate` becomes an empty text.
PlistPtr plistNode(const DefaultsValue& value);

/// The dictionary that `bytes` hold, as XML or in the binary form; none when they hold none.
PlistPtr parsedDictionary(std::string_view bytes);

/// The property list as XML.
Result<std::string> serialized(plist_t node);

}  // namespace tavelle
