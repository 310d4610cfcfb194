#pragma once

#include <memory>
#include <string>

namespace tavelle {

class GuideWindow;
class WebView;

/// Hears of what becomes of a guide window. Main thread only.
class GuideWindowDelegate {
 public:
  virtual ~GuideWindowDelegate() = default;

  /// The window has left the screen for good, because the user or `performClose()` closed it; told once. It is still
  /// at work on that: destroy it, and what it shows, a turn of the main loop later.
  virtual void guideWindowWillClose(GuideWindow& window) = 0;
};

/// A window in which the user reads a page and uses it by mouse and keyboard: of a fixed size, without a title bar, all
/// of it the page's but the buttons by which the desktop closes and minimises windows. It is dragged by the strip along
/// its top and by whatever part of the page answers no click; Control-W closes it. It starts off screen. Main thread
/// only.
class GuideWindow {
 public:
  virtual ~GuideWindow() = default;

  /// Brings the window on screen, in front of all other windows, and gives it the keyboard.
  virtual void show() = 0;
  /// Whether the window is on screen; also when it is minimised or other windows hide it.
  virtual bool isVisible() const = 0;
  /// Closes the window as if its close button were clicked; tells the delegate before it returns.
  virtual void performClose() = 0;
};

/// Makes guide windows. Main thread only.
class GuideWindows {
 public:
  virtual ~GuideWindows() = default;

  struct Settings {
    /// Told to task bars and the like; the window itself doesn't show it.
    std::string title;
    /// Size of the content, in logical pixels.
    int width = 0;
    int height = 0;
    /// Height of the strip along the top, in logical pixels.
    int dragStrip = 0;
  };

  /// A window in the centre of the screen, filled with `content`, which must be destroyed before it. `delegate` must
  /// outlive it.
  virtual std::unique_ptr<GuideWindow> make(const Settings& settings, WebView& content,
                                            GuideWindowDelegate& delegate) = 0;
};

}  // namespace tavelle
