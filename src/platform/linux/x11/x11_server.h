#pragma once

#include "platform/linux/display/display_server.h"
#include "platform/linux/picture/linux_desktop_picture.h"
#include "platform/linux/toolkit/gdk_screens.h"
#include "platform/linux/x11/panel_areas.h"
#include "platform/linux/x11/x11_spaces.h"
#include "platform/linux/x11/x11_window_list.h"
#include "platform/linux/x11/x_connection.h"

namespace tavelle {

/// The X server, and what the window manager tells on it.
class X11Server final : public DisplayServer {
 public:
  bool hasLayers() const override { return false; }
  DesktopPicture& picture() override { return picture_; }
  Screens& screens() override { return screens_; }
  Spaces& spaces() override { return spaces_; }
  WindowList& windowList() override { return windowList_; }
  Registration onWindowEvent(std::function<void()> happened) override;

 private:
  const XConnection connection_;
  const PanelAreas panels_{connection_};
  LinuxDesktopPicture picture_{&connection_};
  GdkScreens screens_{panels_};
  X11Spaces spaces_{connection_};
  X11WindowList windowList_{connection_};
};

}  // namespace tavelle
