#pragma once

#include <functional>
#include <memory>

#include "platform/registration.h"
#include "platform/result.h"

namespace tavelle {

class DesktopPicture;
class Screens;
class Spaces;
class WindowList;

/// The display server that this process is a client of, and what it tells of its desktop. Main thread only.
class DisplayServer {
 public:
  virtual ~DisplayServer() = default;

  virtual DesktopPicture& picture() = 0;
  virtual Screens& screens() = 0;
  virtual Spaces& spaces() = 0;
  virtual WindowList& windowList() = 0;
  /// Calls `happened` on the main loop after something that is likely to change which windows are in sight.
  virtual Registration onWindowEvent(std::function<void()> happened) = 0;
};

/// Connects the toolkit to the X server, and all that does without the toolkit; an error when it can't be reached. Once
/// in a process. `programName` is the one that the server is told.
Result<std::unique_ptr<DisplayServer>> connectToDisplay(const char* programName);

}  // namespace tavelle
