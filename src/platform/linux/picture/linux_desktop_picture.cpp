#include "platform/linux/picture/linux_desktop_picture.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <system_error>

#include "platform/linux/file_operations.h"
#include "platform/linux/picture/gsettings_picture.h"
#include "platform/linux/picture/pcmanfm_picture.h"
#include "platform/linux/picture/plasma_picture.h"
#include "platform/linux/picture/root_window_picture.h"
#include "platform/linux/picture/xfconf_picture.h"

namespace tavelle {
namespace {

/// For compositors that leave the picture to a program of the user's choice.
class NoPicture final : public DesktopPicture {
 public:
  Result<void> set(const std::filesystem::path& /*image*/, const Screen& /*screen*/) override {
    return Error{"this Wayland desktop has no picture of its own"};
  }
  std::optional<std::string> current(const Screen& /*screen*/) const override { return std::nullopt; }
};

/// By what the session says of itself: names between colons, the more special ones first.
std::unique_ptr<DesktopPicture> pictureOfRunningDesktop(const Monitors& monitors, const XConnection* connection) {
  const char* const variable = std::getenv("XDG_CURRENT_DESKTOP");
  std::string_view names = variable ? variable : "";
  while (!names.empty()) {
    const std::string_view name = names.substr(0, names.find(':'));
    if (name == "XFCE" && connection) return std::make_unique<XfconfPicture>(*connection, monitors);
    if (name == "LXQt" && connection) return std::make_unique<PcmanfmPicture>(monitors);
    if (name == "KDE") return std::make_unique<PlasmaPicture>(monitors);
    if (auto desktop = gsettingsDesktop(name)) return std::make_unique<GSettingsPicture>(*std::move(desktop));
    names.remove_prefix(std::min(name.size() + 1, names.size()));
  }
  if (connection) return std::make_unique<RootWindowPicture>(monitors);
  return std::make_unique<NoPicture>();
}

}  // namespace

LinuxDesktopPicture::LinuxDesktopPicture(const Monitors& monitors, const XConnection* connection)
    : running_(pictureOfRunningDesktop(monitors, connection)) {}

Result<void> LinuxDesktopPicture::set(const std::filesystem::path& image, const Screen& screen) {
  // A desktop keeps the path for later, from wherever it was given.
  std::error_code code;
  const auto absolute = std::filesystem::absolute(image, code);
  if (code) return systemError(image.native(), code.value());
  if (!std::filesystem::is_regular_file(absolute, code)) {
    return systemError(absolute.native(), code ? code.value() : static_cast<int>(std::errc::invalid_argument));
  }
  return running_->set(absolute, screen);
}

std::optional<std::string> LinuxDesktopPicture::current(const Screen& screen) const {
  return running_->current(screen);
}

}  // namespace tavelle
