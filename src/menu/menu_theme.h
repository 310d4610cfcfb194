#pragma once

#include "platform/canvas.h"

namespace tavelle {

/// How the menus of the desktop look.
struct MenuTheme {
  /// That of a menu's items.
  TextFont font;
  /// Behind the item under the pointer.
  Color accent;
  /// Text on the accent colour.
  Color selectedText;
  Color label;
  /// Of what is less important than a label.
  Color secondaryLabel;
};

}  // namespace tavelle
