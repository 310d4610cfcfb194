#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "model/wallpaper.h"

namespace tavelle {

class Files;
class TextOrder;

/// `all` in the order in which a file browser shows names; those that it shows as equals keep their order.
std::vector<Wallpaper> sortedByName(std::vector<Wallpaper> all, const TextOrder& order);

/// The wallpapers of the folder `library` in the order in which a file browser shows names; names that it shows as
/// equals keep the file system's order. Empty when the folder cannot be read.
std::vector<Wallpaper> listWallpapers(const std::filesystem::path& library, const Files& files, const TextOrder& order);

/// The first of `all` that is named so; none when there is none.
std::optional<Wallpaper> findNamed(const std::vector<Wallpaper>& all, const std::string& name, const TextOrder& order);

/// `recents` with `name` at its head and nowhere else, at most 30 names.
std::vector<std::string> withMostRecent(const std::vector<std::string>& recents, const std::string& name,
                                        const TextOrder& order);

/// The first three of: the one of `all` that is `current`, those named in `recents` in that order, the others newest
/// first. Among equally new ones the order of `all` decides.
std::vector<Wallpaper> quickList(const std::vector<Wallpaper>& all, const std::optional<Wallpaper>& current,
                                 const std::vector<std::string>& recents, const Files& files, const TextOrder& order);

}  // namespace tavelle
