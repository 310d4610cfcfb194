#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "base/result.h"
#include "platform/screens.h"

namespace tavelle {

/// The desktop's own background picture. Blocks. Main thread only.
class DesktopPicture {
 public:
  virtual ~DesktopPicture() = default;

  /// Makes the image file the picture of `screen`, scaled to fill it with the aspect kept, centred and clipped. A
  /// desktop that has one picture for all screens sets that.
  virtual Result<void> set(const std::filesystem::path& image, const Screen& screen) = 0;

  /// A name for what the desktop says it shows on `screen` now, whatever program chose it: the same name for the same
  /// picture, another for another. It means nothing else and is only good for being compared with names that this
  /// function gave. None when no picture has been set or the desktop cannot tell.
  ///
  /// Whoever remembers the name right after a `set` of its own knows by a different one that the user has chosen
  /// another picture since. None is no such sign: the desktop may just be starting.
  virtual std::optional<std::string> current(const Screen& screen) const = 0;
};

}  // namespace tavelle
