#include "platform/linux/desktop/linux_desktop_picture.h"

#include <system_error>

#include "platform/linux/desktop/gsettings_picture.h"
#include "platform/linux/desktop/root_window_picture.h"
#include "platform/linux/file_descriptor.h"

namespace tavelle {

Result<void> LinuxDesktopPicture::set(const std::filesystem::path& image, const Screen& screen) {
  // A desktop keeps the path for later, from wherever it was given.
  std::error_code code;
  const auto absolute = std::filesystem::absolute(image, code);
  if (code) return systemError(image.native(), code.value());
  if (!std::filesystem::is_regular_file(absolute, code)) {
    return systemError(absolute.native(), code ? code.value() : static_cast<int>(std::errc::invalid_argument));
  }
  if (const auto desktop = runningGSettingsDesktop()) return setGSettingsPicture(*desktop, absolute);
  return paintRootWindow(absolute, screen);
}

}  // namespace tavelle
