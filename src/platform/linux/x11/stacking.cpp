#include "platform/linux/x11/stacking.h"

#include <gdk/gdkx.h>

#include <array>
#include <string_view>
#include <utility>

namespace tavelle {
namespace {

using enum Stacking::BesideAlpha;

constexpr Stacking usual{.type = GDK_WINDOW_TYPE_HINT_DESKTOP, .canRaise = true, .besideAlpha = anywhere};

constexpr std::array<std::pair<std::string_view, Stacking>, 3> others{{
    {"KWin", {.type = GDK_WINDOW_TYPE_HINT_DESKTOP, .canRaise = true, .besideAlpha = above}},
    // A click raises MATE's file manager above all other windows for the desktop; only docks stay in front of it.
    {"Metacity (Marco)", {.type = GDK_WINDOW_TYPE_HINT_DOCK, .canRaise = false, .besideAlpha = anywhere}},
    {"Mutter (Muffin)", {.type = GDK_WINDOW_TYPE_HINT_DESKTOP, .canRaise = false, .besideAlpha = below}},
}};

}  // namespace

Stacking stackingOf(GdkDisplay* display) {
  const std::string_view name = gdk_x11_screen_get_window_manager_name(gdk_display_get_default_screen(display));
  for (const auto& [other, stacking] : others) {
    if (other == name) return stacking;
  }
  return usual;
}

}  // namespace tavelle
