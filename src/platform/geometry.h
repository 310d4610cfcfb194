#pragma once

namespace tavelle {

/// A rectangle in the coordinate space that its holder names. The unit is the desktop's logical pixel.
struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  friend bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace tavelle
