#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/desktop_picture.h"

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

/// The desktop that goes by this name in `XDG_CURRENT_DESKTOP`, when it is one of that family.
std::optional<GSettingsDesktop> gsettingsDesktop(std::string_view name);

/// The picture in the desktop's settings, one for all screens. Its name is what the settings hold: the picture of the
/// light style and that of the dark one, where there is one.
class GSettingsPicture final : public DesktopPicture {
 public:
  explicit GSettingsPicture(GSettingsDesktop desktop) : desktop_(std::move(desktop)) {}

  Result<void> set(const std::filesystem::path& image, const Screen& screen) override;
  std::optional<std::string> current(const Screen& screen) const override;

 private:
  const GSettingsDesktop desktop_;
};

}  // namespace tavelle
