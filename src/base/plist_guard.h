#pragma once

#include <string_view>

namespace tavelle {

/// Whether it is safe to give these bytes to the property-list library, which trusts what it reads. It calls itself for
/// each level of nesting, so a deep list overflows the stack. It copies a part of a binary list each time that the part
/// is referred to, so a small file can fill the memory. It moves the rest of an XML text for each "&" in it, so one
/// file can take hours. And it accepts text that is not valid, which it then writes shortened, with bytes from behind
/// its end, or so that nobody can read the file. True does not mean that the list is well formed.
bool isReasonablePlist(std::string_view bytes);

}  // namespace tavelle
