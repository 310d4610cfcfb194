#pragma once

#include <gdkmm/rectangle.h>
#include <sigc++/connection.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "platform/linux/menu/embedded_icon.h"
#include "platform/linux/menu/status_notifier_item.h"

namespace tavelle {

class Monitors;

/// The program's icon in the desktop's panel. It is shown through the session bus (StatusNotifierItem) where a panel
/// takes icons so, else in the X server's system tray; where neither is there, in whichever of the two comes first. It
/// comes back by itself after the panel has been restarted. Never blocks on a panel. Main thread only.
class TrayIcon {
 public:
  /// Called on the main loop with the place that was clicked, to show a menu beside: the icon's rectangle in the X
  /// server's tray, otherwise the point that the panel gave, as a rectangle of one pixel; none where it is not known.
  /// In the toolkit's coordinates of the root window. It may destroy the icon.
  using Clicked = std::function<void(const std::optional<Gdk::Rectangle>& place)>;

  /// `icons` is a folder of icon themes that holds the program's own icons; without one the icon is a generic one.
  /// The system tray is tried only where the `monitors`, which outlive this, are an X server's. `clicked` hears of each
  /// click with the first or the second button and each activation by keyboard.
  TrayIcon(const std::optional<std::filesystem::path>& icons, const Monitors& monitors, Clicked clicked);
  TrayIcon(const TrayIcon&) = delete;
  TrayIcon& operator=(const TrayIcon&) = delete;
  /// Takes the icon out of the panel.
  ~TrayIcon();

  /// Acts as a click of the user's, with the place of the icon as far as it is known: on the bus that is where it was
  /// clicked last. Calls `clicked` before it returns.
  void performClick();

 private:
  void shownOnBus(bool shown);
  void clickedOnBus(int x, int y);

  const Monitors& monitors_;
  const Clicked clicked_;
  std::optional<Gdk::Rectangle> lastPlace_;
  std::unique_ptr<EmbeddedIcon> embedded_;
  sigc::connection patience_;
  StatusNotifierItem item_;
};

}  // namespace tavelle
