#pragma once

#include "base/property_list.h"
#include "platform/user_defaults.h"

namespace tavelle {

/// What a node of a property list means as a setting.
DefaultsValue defaultsValue(plist_t node);

/// A setting as a node of a property list. `monostate` becomes an empty text.
PlistPtr plistNode(const DefaultsValue& value);

}  // namespace tavelle
