#pragma once

#include <string_view>

namespace tavelle {

/// Whether the bytes can be handed to the property-list library without danger. It follows a list's nesting by calling
/// itself, copies what a binary list refers to twice, and moves the rest of an XML text for each "&", so that a small
/// file from a hostile hand could use up the stack, all memory or hours. And it takes texts that are none, to write
/// them shorter, with bytes behind them that are not theirs, or in a form that nobody can read. True says nothing about
/// whether the list is well formed.
bool isReasonablePlist(std::string_view bytes);

}  // namespace tavelle
