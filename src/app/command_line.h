#pragma once

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace tavelle {

class DesktopPicture;
class Screens;

/// A task that the program does instead of starting the application.
enum class Mode { setStill, deleteWallpaper, syncSpaces, coverage, previewMenu };

/// The task that the arguments (without the program's own path) ask for. None when the first argument is no option of
/// the program's, letter case included, or lacks what it needs: then the application starts.
std::optional<Mode> commandLineMode(const std::vector<std::string>& arguments);

/// Makes the image file the desktop picture of every screen, and reports on the streams. A screen that refuses does not
/// stop the others. Returns the exit status: 0, or 1 when any screen refused.
int setStill(const std::filesystem::path& image, const Screens& screens, DesktopPicture& desktopPicture,
             std::ostream& out, std::ostream& err);

}  // namespace tavelle
