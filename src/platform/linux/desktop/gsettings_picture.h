#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/result.h"

namespace tavelle {

/// How a desktop of the GNOME family keeps its picture in its settings.
struct GSettingsDesktop {
  std::string schema;
  /// The key holds a path and not an address.
  bool plainPath = false;
  std::string pictureKey;
  /// The picture of the dark style; empty where there is but one.
  std::string darkPictureKey;
  /// The key whose value "zoom" fills the screen with the aspect kept.
  std::string optionsKey;
};

/// The desktop that runs, when it is one of that family; told by the session's environment, not by what is installed.
std::optional<GSettingsDesktop> runningGSettingsDesktop();

/// Sets the picture for all screens.
Result<void> setGSettingsPicture(const GSettingsDesktop& desktop, const std::filesystem::path& image);

}  // namespace tavelle
