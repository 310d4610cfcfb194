#pragma once

#include <string_view>

namespace tavelle {

/// Whether the bytes can be handed to the property-list library without danger. It follows a list's nesting by calling
/// itself, and copies what a binary list refers to twice, so that some hundred bytes from a hostile hand could use up
/// the stack or all memory. True says nothing about whether the list is well formed.
bool isReasonablePlist(std::string_view bytes);

}  // namespace tavelle
