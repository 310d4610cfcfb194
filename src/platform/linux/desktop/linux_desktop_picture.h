#pragma once

#include "platform/desktop_picture.h"

namespace tavelle {

/// Sets the picture in the way of the desktop that runs: through its settings where it has some, else by painting the
/// root window of the X server.
class LinuxDesktopPicture final : public DesktopPicture {
 public:
  Result<void> set(const std::filesystem::path& image, const Screen& screen) override;
};

}  // namespace tavelle
