#pragma once

#include <X11/Xlib.h>

#include <optional>
#include <string>
#include <vector>

namespace tavelle {

/// A rectangle of the root window, in its pixels.
struct RootPlace {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  friend bool operator==(const RootPlace&, const RootPlace&) = default;
};

/// Which images a pixmap of ours shows, and where.
///
/// The record stands on a window that is never mapped and belongs to the client that made the pixmap; the root
/// window's property _TAVELLE_PICTURE tells the window. Both stay behind when the client ends, and whoever replaces the
/// picture frees all that the client made. So a later pixmap that is given the same number by chance never passes for
/// ours. On the window, the property of that name holds the pixmap, and _TAVELLE_IMAGES the images.
struct RootRecord {
  struct Image {
    RootPlace place;
    std::string path;
  };

  Pixmap pixmap = None;
  std::vector<Image> images;
};

/// The record of the picture that this program painted last; none when it has gone with its pixmap. `display` is a
/// connection of the caller's own, not the toolkit's.
std::optional<RootRecord> readRootRecord(Display* display);

/// Leaves the record on the server, in place of an older one. The pixmap was made by this connection.
void writeRootRecord(Display* display, const RootRecord& record);

/// The pixmap that a property of the window names; none when there is no such property, or window.
std::optional<Pixmap> pixmapProperty(Display* display, Window window, const char* name);

}  // namespace tavelle
