#pragma once

#include <memory>

#include "platform/linux/display/display_server.h"
#include "platform/linux/picture/linux_desktop_picture.h"
#include "platform/linux/toolkit/gdk_screens.h"
#include "platform/linux/wayland/wayland_outputs.h"
#include "platform/linux/wayland/wayland_windows.h"
#include "platform/spaces.h"

namespace tavelle {

/// A Wayland compositor with layers.
class WaylandServer final : public DisplayServer {
 public:
  WaylandServer();

  bool hasLayers() const override { return true; }
  DesktopPicture& picture() override { return picture_; }
  Screens& screens() override { return screens_; }
  Spaces& spaces() override { return spaces_; }
  WindowList& windowList() override { return windows(); }
  Registration onWindowEvent(std::function<void()> happened) override;

 private:
  /// No protocol that is common tells of workspaces, and no desktop here keeps a picture for each.
  class NoSpaces final : public Spaces {
   public:
    std::vector<std::string> list() const override { return {}; }
    Registration onChange(std::function<void()> /*changed*/) override { return {}; }
  };
  WaylandWindows& windows();

  const WaylandOutputs outputs_;
  const std::unique_ptr<WorkAreas> workAreas_;
  LinuxDesktopPicture picture_{nullptr};
  GdkScreens screens_{*workAreas_};
  NoSpaces spaces_;
  /// Made when it is asked for: not every process wants to hear of each window.
  std::unique_ptr<WaylandWindows> windows_;
};

}  // namespace tavelle
