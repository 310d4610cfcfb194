#pragma once

#include <gdk/gdk.h>

namespace tavelle {

/// How a window manager has to be asked so that wallpapers lie next to the windows that other programs have for the
/// desktop.
struct Stacking {
  /// The type of wallpaper windows. State "below" goes with it.
  GdkWindowTypeHint type;
  /// Whether a window that asks for the front of its layer gets it. Where it does not, the manager marks it as one that
  /// wants the user's attention.
  bool canRaise;
  /// Whether windows for the desktop that have an alpha channel are transparent where they draw no icon, so that
  /// wallpapers belong below them. The manager keeps to that when it sorts its windows anew (BriefWindow).
  bool showsThrough;
};

/// What holds for the manager that runs, seen by trial with each that is not like the others (docs/desktops.md).
Stacking stackingOf(GdkDisplay* display);

}  // namespace tavelle
