#pragma once

#include <functional>
#include <memory>

#include "base/registration.h"
#include "base/result.h"

namespace tavelle {

class DesktopPicture;
class Screens;
class Spaces;
class WindowList;

/// The display server that this process is a client of, and what it tells of its desktop. Main thread only.
class DisplayServer {
 public:
  virtual ~DisplayServer() = default;

  /// Whether wallpaper windows and menus are layers of a Wayland compositor's rather than windows of an X server's.
  virtual bool hasLayers() const = 0;
  virtual DesktopPicture& picture() = 0;
  virtual Screens& screens() = 0;
  virtual Spaces& spaces() = 0;
  virtual WindowList& windowList() = 0;
  /// Calls `happened` on the main loop after something that is likely to change which windows are in sight.
  virtual Registration onWindowEvent(std::function<void()> happened) = 0;
};

/// Connects the toolkit, and all that does without the toolkit: to a Wayland compositor where it can put layers on the
/// screen (wlr-layer-shell), otherwise to an X server, which also is how to reach a Wayland compositor without layers.
/// `GDK_BACKEND` in the environment rules out one or the other, as in every program of the toolkit's. An error when no
/// server that is left can be reached. Once in a process. `programName` is the one that the server is told.
Result<std::unique_ptr<DisplayServer>> connectToDisplay(const char* programName);

}  // namespace tavelle
