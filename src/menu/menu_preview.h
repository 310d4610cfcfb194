#pragma once

#include <filesystem>
#include <iosfwd>
#include <string_view>
#include <vector>

#include "library/wallpaper.h"
#include "platform/platform.h"

namespace tavelle {

class Bitmaps;
class Controller;
class TextOrder;

/// The number that `text` writes in decimal digits, a sign before them or not; 0 when it is negative, too large to
/// count that far, or no such number.
std::size_t sampleCount(std::string_view text);

/// `all` with so many made-up wallpapers of the folder `library` among them, "Sample Wallpaper 1" and so on, in the
/// order in which a file browser shows names. The folders are not made.
std::vector<Wallpaper> withSamples(std::vector<Wallpaper> all, std::size_t count, const std::filesystem::path& library,
                                   const TextOrder& order);

/// Draws the wallpaper list as the status menu shows it, `samples` made-up wallpapers among those of the library:
/// collapsed and expanded, in the light and the dark appearance, as the PNG files "menu-light-collapsed.png" and so on
/// in `folder` (absolute), in place of files of that name. Each that was drawn leaves a line on `out`, its size in
/// points at the end. A pixel for each point. A file that cannot be written is passed over.
void previewMenu(Controller& controller, const Platform& platform, Bitmaps& bitmaps,
                 const std::filesystem::path& folder, std::size_t samples, std::ostream& out);

}  // namespace tavelle
