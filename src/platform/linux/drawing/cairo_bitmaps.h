#pragma once

#include "platform/bitmaps.h"

namespace tavelle {

/// Pictures that Cairo draws, the text smoothed in greys as for any screen.
class CairoBitmaps final : public Bitmaps {
 public:
  std::unique_ptr<Bitmap> make(double width, double height, double scale) override;
};

}  // namespace tavelle
