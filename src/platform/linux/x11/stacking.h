#pragma once

#include <gdk/gdk.h>

namespace tavelle {

/// How a window manager has to be asked so that wallpapers lie next to the windows that other programs have for the
/// desktop.
struct Stacking {
  /// Where wallpapers belong beside a window for the desktop that has an alpha channel.
  enum class BesideAlpha {
    /// Where they are.
    anywhere,
    /// Below: it is transparent where it draws no icon. The manager keeps to that when it sorts its windows anew
    /// (BriefWindow).
    below,
    /// Above: it draws a picture of its own, and the manager has it in front of others after a click.
    above,
  };

  /// The type of wallpaper windows. State "below" goes with it.
  GdkWindowTypeHint type;
  /// Whether a window that asks for the front of its layer gets it. Where it does not, the manager marks it as one that
  /// wants the user's attention.
  bool canRaise;
  BesideAlpha besideAlpha;
};

/// What holds for the manager that runs, seen by trial with each that is not like the others (docs/desktops.md).
Stacking stackingOf(GdkDisplay* display);

}  // namespace tavelle
