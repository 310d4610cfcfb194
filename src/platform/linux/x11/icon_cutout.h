#pragma once

#include <optional>
#include <vector>

#include "platform/linux/x11/icon_mask.h"
#include "platform/linux/x11/screen_images.h"
#include "platform/linux/x11/x_connection.h"

namespace tavelle {

/// The icons in a file manager's window for the desktop that shows them and the picture in one, without an alpha
/// channel, and wallpaper windows in front of it that leave them out. Where the plain picture is not known, or too much
/// of the window is something else, wallpapers stay whole. Main thread only.
class IconCutout {
 public:
  /// Has the server tell of damage to the window, on this connection. `place` is the window's, in the root window's
  /// pixels. All must outlive this.
  IconCutout(const XConnection& connection, ScreenImages& images, xcb_window_t window, const Rect& place);
  IconCutout(const IconCutout&) = delete;
  IconCutout& operator=(const IconCutout&) = delete;
  ~IconCutout();

  /// Remembers that something in this area, in the window's pixels, may have changed.
  void hasChanged(const Rect& area);
  void allHasChanged();
  /// Looks at what may have changed. `picture` is the plain one, which fills the root window. Whether wallpapers are to
  /// be cut anew. What could not be looked at, since the window or the picture was just coming or going, stays for the
  /// next time. Blocks for the server's answers.
  bool look(std::optional<xcb_pixmap_t> picture);

  /// Whether something could not be looked at.
  bool isBehind() const { return !areas_.empty(); }
  /// Whether there are icons that can be told from the picture.
  bool isKnown() const;
  const Rect& place() const { return place_; }
  /// Gives the wallpaper window, which lies there in the root window's pixels, the shape of all that is no icon.
  void cutFrom(xcb_window_t wallpaper, const Rect& wallpaperPlace) const;

 private:
  std::optional<bool> compare(const Rect& strip, xcb_pixmap_t picture);

  const XConnection& connection_;
  ScreenImages& images_;
  const xcb_window_t window_;
  const Rect place_;
  const std::uint32_t damage_;
  IconMask icons_;
  /// Where something may have changed since it was looked at.
  std::vector<Rect> areas_;
  /// Whether the last look could compare all that it wanted to.
  bool isCompared_ = false;
};

}  // namespace tavelle
