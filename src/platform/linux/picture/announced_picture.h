#pragma once

#include "platform/desktop_picture.h"

namespace tavelle {

/// The name of the wallpaper agent on the session bus, and of its action, which takes one text: the address of the
/// image that was set, a space, and the name of the screen.
constexpr auto agentName = "org.tavelle.WallpaperAgent";
constexpr auto pictureSetAction = "picture-set";

/// The desktop's picture, as the application and its command line set it: an agent that runs is told of each, so that
/// it keeps what the user has chosen and not what it remembers.
class AnnouncedPicture final : public DesktopPicture {
 public:
  explicit AnnouncedPicture(DesktopPicture& picture) : picture_(picture) {}

  Result<void> set(const std::filesystem::path& image, const Screen& screen) override;
  std::optional<std::string> current(const Screen& screen) const override { return picture_.current(screen); }

 private:
  DesktopPicture& picture_;
};

}  // namespace tavelle
