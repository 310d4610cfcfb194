#pragma once

#include "platform/desktop_picture.h"
#include "platform/linux/toolkit/monitors.h"

namespace tavelle {

/// The picture on the X server's root window, for sessions without a desktop that has one of its own. The image is
/// painted over the screen's part of the root window; the rest of it keeps what it shows. The picture outlives this
/// process, and other programs find it by the usual properties of the root window.
///
/// Its name is the image that was painted where the screen is, as long as the root window's properties name the pixmap
/// that this program made last. When they name another, another program has painted the root window since, and the name
/// is that pixmap's number, which is no name of ours but may come round again for a later pixmap. A screen over whose
/// exact place nothing of ours was painted has no name: after a change of monitors they have to be painted again.
/// Programs that fill the root window without telling a pixmap, such as those that give it a plain colour, stay
/// unnoticed: the X server does not say what a window's background is.
class RootWindowPicture final : public DesktopPicture {
 public:
  explicit RootWindowPicture(const Monitors& monitors) : monitors_(monitors) {}

  Result<void> set(const std::filesystem::path& image, const Screen& screen) override;
  std::optional<std::string> current(const Screen& screen) const override;
  /// All that the root window's picture shows, pixel for pixel, as a PNG file.
  Result<std::string> png() const;

 private:
  const Monitors& monitors_;
};

}  // namespace tavelle
