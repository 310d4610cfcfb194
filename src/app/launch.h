#pragma once

#include <optional>
#include <string>
#include <vector>

#include "library/wallpaper.h"

namespace tavelle {

class TextOrder;

/// The wallpaper to start with: the one of `all` that is named `stored`, else the one that the program comes with, else
/// the first; none when `all` is empty.
std::optional<Wallpaper> initialWallpaper(const std::vector<Wallpaper>& all, const std::optional<std::string>& stored,
                                          const TextOrder& order);

}  // namespace tavelle
