#pragma once

#include <memory>
#include <utility>

#include "platform/linux/desktop/display_server.h"
#include "platform/linux/desktop/gdk_screens.h"
#include "platform/linux/desktop/linux_desktop_picture.h"
#include "platform/linux/desktop/wayland_windows.h"
#include "platform/spaces.h"

namespace tavelle {

/// A Wayland compositor with layers.
class WaylandServer final : public DisplayServer {
 public:
  bool hasLayers() const override { return true; }
  DesktopPicture& picture() override { return picture_; }
  Screens& screens() override { return screens_; }
  Spaces& spaces() override { return spaces_; }
  WindowList& windowList() override { return *windows_; }
  Registration onWindowEvent(std::function<void()> happened) override {
    return windows_->onChange(std::move(happened));
  }

 private:
  /// No protocol that is common tells of workspaces, and no desktop here keeps a picture for each.
  class NoSpaces final : public Spaces {
   public:
    std::vector<std::string> list() const override { return {}; }
    Registration onChange(std::function<void()> /*changed*/) override { return {}; }
  };

  const std::unique_ptr<WorkAreas> workAreas_ = waylandWorkAreas(gdk_display_get_default());
  const std::unique_ptr<WaylandWindows> windows_ = waylandWindows(gdk_display_get_default());
  LinuxDesktopPicture picture_{nullptr};
  GdkScreens screens_{*workAreas_};
  NoSpaces spaces_;
};

}  // namespace tavelle
