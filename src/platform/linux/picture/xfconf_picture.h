#pragma once

#include "platform/desktop_picture.h"
#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/x11/x11_spaces.h"
#include "platform/linux/x11/x_connection.h"

namespace tavelle {

/// The picture in Xfce's settings, which has one for each monitor and workspace: it is set for all workspaces that
/// there are and all that have settings. Its name is the one in the settings of the workspace that is in sight.
class XfconfPicture final : public DesktopPicture {
 public:
  XfconfPicture(const XConnection& connection, const Monitors& monitors);

  Result<void> set(const std::filesystem::path& image, const Screen& screen) override;
  std::optional<std::string> current(const Screen& screen) const override;

 private:
  std::vector<std::string> monitorNames(const Screen& screen, GVariant* properties) const;

  const XConnection& connection_;
  const Monitors& monitors_;
  const X11Spaces spaces_;
  const xcb_atom_t currentDesktop_;
};

}  // namespace tavelle
