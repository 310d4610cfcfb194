#pragma once

#include <map>
#include <optional>
#include <vector>

#include "base/geometry.h"
#include "platform/linux/x11/x_connection.h"

namespace tavelle {

/// A window that another program, a file manager or a shell, has for the desktop itself.
struct DesktopWindow {
  /// In the root window's pixels.
  Rect place;
  /// Whether it has no alpha channel, so that what lies below it is never seen.
  bool isOpaque;

  friend bool operator==(const DesktopWindow&, const DesktopWindow&) = default;
};

/// Finds these windows in what the window manager tells. Main thread only.
class DesktopWindows {
 public:
  /// The connection must outlive this.
  explicit DesktopWindows(const XConnection& connection);

  /// Those on screen. Blocks for two answers of the server's.
  std::map<xcb_window_t, DesktopWindow> list() const;
  /// All windows that are managed, the lowest first. Blocks.
  std::vector<xcb_window_t> stacking() const;
  /// The picture of the desktop, without icons; none when nobody tells. Blocks.
  std::optional<xcb_pixmap_t> picture() const;

  /// The root window's properties: which windows there are, in which order they lie, and which picture there is.
  xcb_atom_t listProperty() const;
  xcb_atom_t stackingProperty() const;
  xcb_atom_t pictureProperty() const;

 private:
  class Request;

  const XConnection& connection_;
  const std::vector<xcb_atom_t> atoms_;
};

}  // namespace tavelle
