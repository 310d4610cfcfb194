#pragma once

#include <filesystem>
#include <optional>
#include <vector>

namespace tavelle {

/// The user's home folder: `$HOME`, else what the system's user database says.
std::filesystem::path homeFolder();

/// The settings file, below `$XDG_CONFIG_HOME`.
std::filesystem::path defaultsFile();

/// What the wallpaper agent remembers from one run to the next, below `$XDG_STATE_HOME`.
std::filesystem::path agentMemoryFile();

/// The pictures that this program has made for the desktop, below `$XDG_DATA_HOME`.
std::filesystem::path desktopPictureFolder();

/// The folders of the entries that a desktop session starts at login, the user's own first; an entry hides those of the
/// same name in the folders behind it. They need not exist.
std::vector<std::filesystem::path> autostartFolders();

/// The file that this process runs, also when a newer one has been put in its place meanwhile.
std::filesystem::path executableFile();

/// "<prefix>/share/tavelle" for an executable in "<prefix>/bin"; none when it does not exist.
std::optional<std::filesystem::path> resourceFolder();

/// The folder of icon themes that the program's own icons are in: "<prefix>/share/icons"; none when it does not exist.
std::optional<std::filesystem::path> iconFolder();

/// "<prefix>/lib/tavelle", where the parts of the program lie that are loaded when they are needed.
std::filesystem::path privateLibraryFolder();

}  // namespace tavelle
