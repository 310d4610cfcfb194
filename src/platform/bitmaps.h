#pragma once

#include <memory>
#include <string>

#include "base/result.h"

namespace tavelle {

class Canvas;

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
