#pragma once

#include <gdkmm/rectangle.h>
#include <gtk/gtk.h>

#include <functional>
#include <optional>

#include "platform/linux/handles.h"

namespace tavelle {

/// The icon in the X server's system tray (freedesktop's System Tray Protocol), in the colour that the tray asks for.
/// It waits for a tray where there is none, and comes back when the tray has been restarted. Main thread only.
class EmbeddedIcon {
 public:
  /// `clicked` is called for each click with the first or the second button and for each activation by keyboard. It
  /// may destroy the icon.
  explicit EmbeddedIcon(std::function<void()> clicked);
  EmbeddedIcon(const EmbeddedIcon&) = delete;
  EmbeddedIcon& operator=(const EmbeddedIcon&) = delete;
  ~EmbeddedIcon();

  /// The icon's rectangle in the toolkit's coordinates of the root window; none while no tray shows it.
  std::optional<Gdk::Rectangle> place() const;

 private:
  std::function<void()> clicked_;
  const GObjectPtr<GtkStatusIcon> icon_;
};

}  // namespace tavelle
