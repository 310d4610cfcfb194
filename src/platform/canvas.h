#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/geometry.h"
#include "base/result.h"

namespace tavelle {

/// Each part from 0.0 to 1.0, in the sRGB space; not multiplied by the opacity.
struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;
  double opacity = 1;

  friend bool operator==(const Color&, const Color&) = default;
};

/// A typeface, in its regular weight.
struct TextFont {
  /// Family names by preference, with commas between them. When the system has none of them it takes its default one.
  std::string family;
  /// In points.
  double size = 0;

  friend bool operator==(const TextFont&, const TextFont&) = default;
};

/// Heights above a font's baseline, in points; what lies below it is negative.
struct FontMetrics {
  double ascender = 0;
  double descender = 0;
};

struct Size {
  double width = 0;
  double height = 0;

  friend bool operator==(const Size&, const Size&) = default;
};

/// A surface to draw on. Coordinates and sizes are points of a space whose y grows downward; how many pixels a point
/// has is the surface's own matter. What comes later covers what came before. Nothing fails: what cannot be drawn is
/// left out. Main thread only.
class Canvas {
 public:
  virtual ~Canvas() = default;

  /// Remembers the origin and the clip; `restore` goes back to those remembered last.
  virtual void save() = 0;
  virtual void restore() = 0;
  /// Moves the origin to (x, y).
  virtual void translate(double x, double y) = 0;
  /// From now on nothing is drawn outside `area`, nor outside earlier clips.
  virtual void clip(const Rect& area) = 0;

  /// A `radius` of 0 gives plain corners; one of more than half a side counts as that half.
  virtual void fillRoundedRect(const Rect& area, double radius, const Color& color) = 0;

  virtual FontMetrics metrics(const TextFont& font) = 0;
  /// Draws `text` (UTF-8) as one line from the left edge of `area`, whatever direction it is read in, its baseline the
  /// font's ascender below the top edge. Text that is wider than `area` ends in an ellipsis there. Line breaks are
  /// drawn as signs.
  virtual void drawText(std::string_view text, const Rect& area, const TextFont& font, const Color& color) = 0;

  /// The size of the symbol beside text of this size: "checkmark", "chevron.up" or "chevron.down", in a semibold
  /// stroke. None for any other name.
  virtual std::optional<Size> symbolSize(std::string_view name, double pointSize) const = 0;
  /// Draws the symbol with its top-left corner at `corner`; an unknown one is left out.
  virtual void drawSymbol(std::string_view name, double pointSize, const Point& corner, const Color& color) = 0;
};

/// Puts the canvas's origin and clip back when it dies.
class [[nodiscard]] CanvasState {
 public:
  explicit CanvasState(Canvas& canvas) : canvas_(canvas) { canvas_.save(); }
  CanvasState(const CanvasState&) = delete;
  CanvasState& operator=(const CanvasState&) = delete;
  ~CanvasState() { canvas_.restore(); }

 private:
  Canvas& canvas_;
};

/// A picture in memory, transparent at first.
class Bitmap {
 public:
  virtual ~Bitmap() = default;

  /// Draws into the picture; its origin is the top-left corner. As long as the bitmap lives.
  virtual Canvas& canvas() = 0;
  /// The bytes of a PNG file of what has been drawn. An error when memory runs out.
  virtual Result<std::string> png() = 0;
};

/// Makes pictures without any display. Main thread only.
class Bitmaps {
 public:
  virtual ~Bitmaps() = default;

  /// One of so many points, `scale` pixels each, parts of a pixel rounded up; none when the system cannot hold it, or
  /// there is nothing to hold.
  virtual std::unique_ptr<Bitmap> make(double width, double height, double scale) = 0;
};

}  // namespace tavelle
