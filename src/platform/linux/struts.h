#pragma once

#include <span>

#include "base/geometry.h"

namespace tavelle {

/// The strip along one edge of the X server's whole picture that a panel keeps free of other windows, as EWMH 1.3 has
/// it in _NET_WM_STRUT_PARTIAL. In any unit and any y-down space that starts at the picture's top-left corner.
struct Strut {
  enum class Edge { left, right, top, bottom };

  Edge edge;
  /// How far the strip reaches from the edge into the picture.
  double depth;
  /// Where the panel begins and ends along the edge.
  double from;
  double to;
};

/// What the struts leave of a monitor in a picture of the given size. A strip counts on the monitor in which it ends:
/// on the way there it crosses others that have nothing to do with the panel.
Rect workArea(const Rect& monitor, double pictureWidth, double pictureHeight, std::span<const Strut> struts);

}  // namespace tavelle
