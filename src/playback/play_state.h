#pragma once

#include <cstddef>
#include <vector>

namespace tavelle {

/// Whether the page of screen `index` is to rest: because the user paused everything, or because the screen is covered.
/// A screen beyond the end of `covered` is not covered.
bool shouldPause(bool paused, const std::vector<bool>& covered, std::size_t index);

}  // namespace tavelle
