#pragma once

#include <filesystem>
#include <functional>

#include "base/registration.h"

namespace tavelle {

/// The desktop session around the program. Main thread only.
class Workspace {
 public:
  virtual ~Workspace() = default;

  /// Shows `folder` in the user's file browser. Returns at once; whether it worked is not told.
  virtual void openFolder(const std::filesystem::path& folder) = 0;

  /// Calls `happened` on the main loop after something that is likely to change which windows are in sight: another
  /// window has become the active one or the active one has ceased to be; windows were minimised, restored or swept
  /// away to show the desktop; another workspace is shown; the machine has woken up. Such things come in bursts, and
  /// the desktop may still be moving windows when the call comes.
  virtual Registration onEvent(std::function<void()> happened) = 0;
};

}  // namespace tavelle
