#pragma once

#include <algorithm>

namespace tavelle {

/// A place in the coordinate space that its holder names.
struct Point {
  double x = 0;
  double y = 0;

  friend bool operator==(const Point&, const Point&) = default;
};

/// A rectangle in the coordinate space that its holder names. The unit is the desktop's logical pixel where the holder
/// says nothing else.
struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  double maxX() const { return x + width; }
  double maxY() const { return y + height; }
  bool isEmpty() const { return !(width > 0 && height > 0); }
  /// A point on the left or top edge lies in the rectangle, one on the right or bottom edge does not.
  bool contains(const Point& point) const {
    return point.x >= x && point.x < maxX() && point.y >= y && point.y < maxY();
  }

  friend bool operator==(const Rect&, const Rect&) = default;
};

/// What both rectangles have in common; an empty rectangle when they do not meet.
inline Rect intersection(const Rect& a, const Rect& b) {
  const double x = std::max(a.x, b.x);
  const double y = std::max(a.y, b.y);
  const Rect common{x, y, std::min(a.maxX(), b.maxX()) - x, std::min(a.maxY(), b.maxY()) - y};
  return common.isEmpty() ? Rect{} : common;
}

/// The smallest rectangle round both.
inline Rect around(const Rect& a, const Rect& b) {
  const double x = std::min(a.x, b.x);
  const double y = std::min(a.y, b.y);
  return {x, y, std::max(a.maxX(), b.maxX()) - x, std::max(a.maxY(), b.maxY()) - y};
}

}  // namespace tavelle
