#pragma once

#include <memory>

#include "platform/linux/toolkit/display_server.h"
#include "platform/linux/toolkit/gdk_screens.h"
#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/toolkit/window_manager.h"
#include "platform/linux/wayland/compositor.h"
#include "platform/linux/wayland/layer_wallpaper_window.h"
#include "platform/linux/wayland/wayland_globals.h"
#include "platform/linux/wayland/wayland_outputs.h"
#include "platform/shared_desktop.h"
#include "platform/spaces.h"

namespace tavelle {

/// Whether the environment names a Wayland compositor that can put layers on the screen (wlr-layer-shell). Connects to
/// it for the question, and waits for its answer a second at most. Main thread only.
bool compositorHasLayers();

/// A Wayland compositor with layers.
class WaylandServer final : public DisplayServer {
 public:
  explicit WaylandServer(GdkDisplay* display);

  Monitors& monitors() override { return monitors_; }
  Screens& screens() override { return screens_; }
  SharedDesktop& sharedDesktop() override { return sharedDesktop_; }
  Spaces& spaces() override { return spaces_; }
  WallpaperWindows& windows() override { return windows_; }
  WindowManager& windowManager() override { return *compositor_; }

 private:
  /// No protocol that is common tells of workspaces, and no desktop here keeps a picture for each.
  class NoSpaces final : public Spaces {
   public:
    std::vector<std::string> list() const override { return {}; }
    Registration onChange(std::function<void()> /*changed*/) override { return {}; }
  };

  /// Layers lie where they belong by themselves.
  class LayeredDesktop final : public SharedDesktop {
   public:
    Registration onTrouble(std::function<void(const std::string&)> /*tell*/) override { return {}; }
  };

  Monitors monitors_;
  const WaylandGlobals globals_;
  const WaylandOutputs outputs_{globals_, monitors_};
  const std::unique_ptr<WindowManager> compositor_{findCompositor(globals_, monitors_)};
  GdkScreens screens_{monitors_, *compositor_};
  NoSpaces spaces_;
  LayeredDesktop sharedDesktop_;
  LayerWallpaperWindows windows_{monitors_};
};

}  // namespace tavelle
