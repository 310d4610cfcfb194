#pragma once

#include <filesystem>

#include "platform/result.h"
#include "platform/screens.h"

namespace tavelle {

/// Paints the image over the screen's part of the X server's root window, and leaves the rest of it as it is. The
/// picture outlives this process, and other programs find it by the usual properties of the root window.
Result<void> paintRootWindow(const std::filesystem::path& image, const Screen& screen);

}  // namespace tavelle
