#pragma once

#include <memory>

#include "platform/desktop_picture.h"
#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/x11/x_connection.h"

namespace tavelle {

/// The picture of the desktop that runs, in that desktop's own way: Xfce, LXQt, Plasma and the GNOME family have
/// settings or a service for it; elsewhere the root window of the X server is painted, if it is one. Which desktop runs
/// is told by the session's environment (`XDG_CURRENT_DESKTOP`), not by what is installed.
class LinuxDesktopPicture final : public DesktopPicture {
 public:
  /// `connection` is null where there is no X server.
  LinuxDesktopPicture(const Monitors& monitors, const XConnection* connection);

  Result<void> set(const std::filesystem::path& image, const Screen& screen) override;
  std::optional<std::string> current(const Screen& screen) const override;

 private:
  const std::unique_ptr<DesktopPicture> running_;
};

}  // namespace tavelle
