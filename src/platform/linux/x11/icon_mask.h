#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/geometry.h"

namespace tavelle {

/// Which pixels of a desktop are icons: those that a file manager's window, which shows picture and icons in one, has
/// otherwise than the plain picture. Coordinates are the window's pixels, sizes whole numbers.
class IconMask {
 public:
  /// Without icons.
  IconMask(int width, int height);

  /// Compares an area of the window with the picture below it, both as rows of 0xRRGGBB, whose highest byte does not
  /// count. The area lies within the mask. Whether any pixel has become an icon, or ceased to be one.
  bool compare(const Rect& area, std::span<const std::uint32_t> window, std::span<const std::uint32_t> picture);

  /// The share of the mask that is icons, from 0 to 1.
  double share() const;

  /// What of the area is no icon, as rectangles from top to bottom and from left to right, counted from the area's
  /// corner. Rectangles of the same rows have the same top and height. Where they would be more than a server can work
  /// with at ease, the icons are taken a little larger than they are. The area may reach beyond the mask.
  std::vector<Rect> around(const Rect& area) const;

 private:
  /// Pixels of one row that are icons, from `begin` to the one before `end`.
  struct Span {
    int begin;
    int end;
    friend bool operator==(const Span&, const Span&) = default;
  };
  /// From left to right, with gaps between them.
  using Row = std::vector<Span>;

  static Row joined(Row spans);
  std::vector<Rect> around(const Rect& area, int grain) const;
  Row iconsIn(int top, int bottom, int left, int right, int grain) const;

  double pixels_;
  std::vector<Row> rows_;
};

}  // namespace tavelle
