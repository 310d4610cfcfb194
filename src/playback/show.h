#pragma once

namespace tavelle {

/// The settings key of the name of the wallpaper last shown.
inline constexpr auto wallpaperKey = "wallpaper";

}  // namespace tavelle
