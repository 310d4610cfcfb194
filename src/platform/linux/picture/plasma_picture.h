#pragma once

#include "platform/desktop_picture.h"
#include "platform/linux/toolkit/monitors.h"

namespace tavelle {

/// The picture of KDE's Plasma, through the scripts that its shell runs. Each screen has a desktop for each activity;
/// the picture is set for all of them. Its name is what the desktop of the activity that is in sight shows: the plugin
/// that draws it and the plugin's image.
class PlasmaPicture final : public DesktopPicture {
 public:
  explicit PlasmaPicture(const Monitors& monitors) : monitors_(monitors) {}

  Result<void> set(const std::filesystem::path& image, const Screen& screen) override;
  std::optional<std::string> current(const Screen& screen) const override;

 private:
  const Monitors& monitors_;
};

}  // namespace tavelle
