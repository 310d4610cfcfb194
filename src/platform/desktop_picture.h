#pragma once

#include <filesystem>

#include "platform/result.h"
#include "platform/screens.h"

namespace tavelle {

/// The desktop's own background picture. Blocks. Main thread only.
class DesktopPicture {
 public:
  virtual ~DesktopPicture() = default;

  /// Makes the image file the picture of `screen`, scaled to fill it with the aspect kept, centred and clipped. A
  /// desktop that has one picture for all screens sets that.
  virtual Result<void> set(const std::filesystem::path& image, const Screen& screen) = 0;
};

}  // namespace tavelle
