#pragma once

#include <memory>

#include "base/result.h"

namespace tavelle {

class Alerts;
class Application;
class Bitmaps;
class DesktopPicture;
class GuideWindows;
class OpenPanels;
class Screens;
class SharedDesktop;
class StatusItems;
class WallpaperWindows;
class WebViews;
class WindowList;
class Workspace;

/// The services that need a display, the toolkit and the web engine. They are built into a library of their own, which
/// is loaded only when one of them is needed: loading it takes longer than a whole command-line task.
class DesktopServices {
 public:
  virtual ~DesktopServices() = default;

  virtual Alerts& alerts() = 0;
  virtual Application& application() = 0;
  virtual DesktopPicture& desktopPicture() = 0;
  virtual OpenPanels& openPanels() = 0;
  virtual GuideWindows& guideWindows() = 0;
  virtual Screens& screens() = 0;
  virtual SharedDesktop& sharedDesktop() = 0;
  virtual StatusItems& statusItems() = 0;
  virtual WallpaperWindows& windows() = 0;
  virtual WindowList& windowList() = 0;
  virtual Workspace& workspace() = 0;
  virtual WebViews& webViews() = 0;
};

/// Whether the environment names a display.
bool hasDisplay();

/// Loads the library and connects to the display; an error when either cannot be had. Once in a process.
Result<std::unique_ptr<DesktopServices>> openDesktop();

/// What the library exports, under the name "tavelleOpenDesktop".
using OpenDesktop = Result<std::unique_ptr<DesktopServices>>();

/// Loads what draws pictures; an error when it cannot be loaded. It lies in a library of its own, since loading the
/// drawing libraries costs a command-line task that draws nothing more than the task itself.
Result<std::unique_ptr<Bitmaps>> openDrawing();

/// What the library exports, under the name "tavelleOpenDrawing".
using OpenDrawing = std::unique_ptr<Bitmaps>();

/// What stands in where there is no display: no screens, no windows, and nobody to answer an alert. It has no pages,
/// and the application does not run.
std::unique_ptr<DesktopServices> noDesktop();

}  // namespace tavelle
