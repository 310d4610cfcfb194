#pragma once

#include "platform/linux/picture/root_window_picture.h"

namespace tavelle {

/// The picture of LXQt's file manager, pcmanfm-qt, which has one window over all monitors and tells nobody what lies
/// behind its icons. The root window is painted, and the file manager shows a file with exactly these pixels, so that
/// whoever compares the two finds the icons. The file is the user's own, below `$XDG_DATA_HOME`.
class PcmanfmPicture final : public DesktopPicture {
 public:
  explicit PcmanfmPicture(const Monitors& monitors) : root_(monitors) {}

  Result<void> set(const std::filesystem::path& image, const Screen& screen) override;
  std::optional<std::string> current(const Screen& screen) const override;

 private:
  RootWindowPicture root_;
};

}  // namespace tavelle
