#pragma once

/// The keys under which the user's settings are stored, all in one place so that none is taken twice.
namespace tavelle::keys {

/// The name of the wallpaper last shown; a text.
inline constexpr auto wallpaper = "wallpaper";
/// The names of the wallpapers shown last, the last one first; texts.
inline constexpr auto recentWallpapers = "recentWallpapers";
/// The names of the samples that have been copied into the library; texts.
inline constexpr auto seededWallpapers = "seededWallpapers";
/// In frames a second; an integer.
inline constexpr auto frameRate = "fps";
/// The share of the full resolution in each direction; a number.
inline constexpr auto resolutionScale = "resolutionScale";
/// Whether the tutorial has opened by itself; a Boolean.
inline constexpr auto guideShown = "guideShown";
/// Where in the panel the icon is wanted, in points from the end; a number. Desktops with such a wish read it here.
inline constexpr auto statusItemPosition = "NSStatusItem Preferred Position Item-0";

}  // namespace tavelle::keys
