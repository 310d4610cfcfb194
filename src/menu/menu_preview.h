#pragma once

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <string_view>

namespace tavelle {

class Bitmaps;
class Controller;
struct Platform;

/// The number that `text` writes in decimal digits, a sign before them or not; 0 when it is negative, too large to
/// count that far, or no such number.
std::size_t sampleCount(std::string_view text);

/// Draws the wallpaper list as the status menu shows it, `samples` made-up wallpapers among those of the library:
/// collapsed and expanded, in the light and the dark appearance, as the PNG files "menu-light-collapsed.png" and so on
/// in `folder` (absolute), in place of files of that name. Each that was drawn leaves a line on `out`, its size in
/// points at the end. A pixel for each point. A file that cannot be written is passed over.
void previewMenu(Controller& controller, const Platform& platform, Bitmaps& bitmaps,
                 const std::filesystem::path& folder, std::size_t samples, std::ostream& out);

}  // namespace tavelle
