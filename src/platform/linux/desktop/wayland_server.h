#pragma once

#include "platform/linux/desktop/display_server.h"
#include "platform/linux/desktop/gdk_screens.h"
#include "platform/linux/desktop/linux_desktop_picture.h"
#include "platform/linux/desktop/work_areas.h"
#include "platform/spaces.h"
#include "platform/window_list.h"

namespace tavelle {

/// A Wayland compositor with layers.
class WaylandServer final : public DisplayServer {
 public:
  bool hasLayers() const override { return true; }
  DesktopPicture& picture() override { return picture_; }
  Screens& screens() override { return screens_; }
  Spaces& spaces() override { return spaces_; }
  WindowList& windowList() override { return windowList_; }
  Registration onWindowEvent(std::function<void()> happened) override;

 private:
  class WholeMonitors final : public WorkAreas {
   public:
    std::vector<Rect> of(const std::vector<GdkMonitor*>& monitors) const override;
  };
  /// No protocol that is common tells of workspaces, and no desktop here keeps a picture for each.
  class NoSpaces final : public Spaces {
   public:
    std::vector<std::string> list() const override { return {}; }
    Registration onChange(std::function<void()> /*changed*/) override { return {}; }
  };
  class NoWindows final : public WindowList {
   public:
    std::optional<std::vector<WindowDescription>> onScreen() const override { return std::nullopt; }
  };

  const WholeMonitors workAreas_;
  LinuxDesktopPicture picture_{nullptr};
  GdkScreens screens_{workAreas_};
  NoSpaces spaces_;
  NoWindows windowList_;
};

}  // namespace tavelle
