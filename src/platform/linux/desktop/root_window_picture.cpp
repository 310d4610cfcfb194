#include "platform/linux/desktop/root_window_picture.h"

#include <X11/Xatom.h>
#include <cairo-xlib.h>
#include <gdk/gdkx.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include "app/text.h"
#include "platform/linux/desktop/gdk_screens.h"
#include "platform/linux/handles.h"

namespace tavelle {
namespace {

using DisplayPtr = std::unique_ptr<Display, FreeWith<XCloseDisplay>>;
using SurfacePtr = std::unique_ptr<cairo_surface_t, FreeWith<cairo_surface_destroy>>;
using CairoPtr = std::unique_ptr<cairo_t, FreeWith<cairo_destroy>>;
using PropertyPtr = std::unique_ptr<unsigned char, FreeWith<XFree>>;

/// The names under which other programs look for the root window's picture, and under which whoever replaces it finds
/// what to free.
constexpr std::array pictureProperties{"_XROOTPMAP_ID", "ESETROOT_PMAP_ID"};

std::optional<Pixmap> pixmapProperty(Display* display, const char* name) {
  Atom type = None;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* bytes = nullptr;
  XGetWindowProperty(display, DefaultRootWindow(display), XInternAtom(display, name, False), 0, 1, False, XA_PIXMAP,
                     &type, &format, &count, &rest, &bytes);
  const PropertyPtr owned(bytes);
  if (type != XA_PIXMAP || format != 32 || count != 1) return std::nullopt;
  // Xlib hands out 32-bit properties as longs.
  return static_cast<Pixmap>(*reinterpret_cast<unsigned long*>(owned.get()));
}

SurfacePtr surfaceOf(Display* display, Pixmap pixmap, int width, int height) {
  return SurfacePtr(
      cairo_xlib_surface_create(display, pixmap, DefaultVisual(display, DefaultScreen(display)), width, height));
}

struct PixmapSize {
  unsigned width = 0;
  unsigned height = 0;
  unsigned depth = 0;
};

/// None when there is no such pixmap. Errors on connections that are not the toolkit's own are passed over by its error
/// handler.
std::optional<PixmapSize> pixmapSize(Display* display, Pixmap pixmap) {
  PixmapSize size;
  Window root = None;
  int x = 0;
  int y = 0;
  unsigned border = 0;
  if (!XGetGeometry(display, pixmap, &root, &x, &y, &size.width, &size.height, &border, &size.depth)) {
    return std::nullopt;
  }
  return size;
}

/// Copies what is on the root window now, as far as it reaches.
void copyCurrentPicture(Display* display, Pixmap target) {
  const auto current = pixmapProperty(display, pictureProperties[0]);
  if (!current) return;
  // The property may be left over from a program that took its pixmap along.
  const auto size = pixmapSize(display, *current);
  if (!size || size->depth != static_cast<unsigned>(DefaultDepth(display, DefaultScreen(display)))) return;
  XCopyArea(display, *current, target, DefaultGC(display, DefaultScreen(display)), 0, 0, size->width, size->height, 0,
            0);
}

void paint(cairo_t* cairo, GdkPixbuf* picture, const Rect& place) {
  const double width = gdk_pixbuf_get_width(picture);
  const double height = gdk_pixbuf_get_height(picture);
  const double scale = std::max(place.width / width, place.height / height);
  cairo_rectangle(cairo, place.x, place.y, place.width, place.height);
  cairo_clip(cairo);
  cairo_translate(cairo, place.x + (place.width - width * scale) / 2, place.y + (place.height - height * scale) / 2);
  cairo_scale(cairo, scale, scale);
  gdk_cairo_set_source_pixbuf(cairo, picture, 0, 0);
  cairo_pattern_set_filter(cairo_get_source(cairo), CAIRO_FILTER_BEST);
  // Otherwise the outermost pixels blend with what was there before.
  cairo_pattern_set_extend(cairo_get_source(cairo), CAIRO_EXTEND_PAD);
  cairo_paint(cairo);
}

/// Makes `pixmap` the root window's picture and frees the one before, as the convention has it: a picture under both
/// names belongs to a client that has gone and left it behind.
void publish(Display* display, Pixmap pixmap) {
  const Window root = DefaultRootWindow(display);
  const auto previous = pixmapProperty(display, pictureProperties[1]);
  const bool leftBehind = previous && previous == pixmapProperty(display, pictureProperties[0]);
  for (const char* name : pictureProperties) {
    XChangeProperty(display, root, XInternAtom(display, name, False), XA_PIXMAP, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&pixmap), 1);
  }
  XSetWindowBackgroundPixmap(display, root, pixmap);
  XClearWindow(display, root);
  if (leftBehind) XKillClient(display, *previous);
  XSetCloseDownMode(display, RetainPermanent);
  XSync(display, False);
}

}  // namespace

Result<void> paintRootWindow(const std::filesystem::path& image, const Screen& screen) {
  ErrorSlot error;
  const auto file = adopt(gdk_pixbuf_new_from_file(image.c_str(), error.out()));
  if (!file) return Error{escapedUtf8(image.native()) + ": " + escapedUtf8(error.message())};
  const auto upright = adopt(gdk_pixbuf_apply_embedded_orientation(file.get()));

  // A connection of its own: what it makes is left behind when it closes.
  const DisplayPtr display(XOpenDisplay(gdk_display_get_name(gdk_display_get_default())));
  if (!display) return Error{"couldn't connect to the X server"};
  const int number = DefaultScreen(display.get());
  const int width = DisplayWidth(display.get(), number);
  const int height = DisplayHeight(display.get(), number);
  const Pixmap pixmap =
      XCreatePixmap(display.get(), DefaultRootWindow(display.get()), static_cast<unsigned>(width),
                    static_cast<unsigned>(height), static_cast<unsigned>(DefaultDepth(display.get(), number)));
  XFillRectangle(display.get(), pixmap, DefaultGC(display.get(), number), 0, 0, static_cast<unsigned>(width),
                 static_cast<unsigned>(height));
  copyCurrentPicture(display.get(), pixmap);
  {
    const SurfacePtr surface = surfaceOf(display.get(), pixmap, width, height);
    const CairoPtr cairo(cairo_create(surface.get()));
    paint(cairo.get(), upright.get(), PixelSpace::current().toPixels(screen.bounds));
    cairo_surface_flush(surface.get());
    if (const auto status = cairo_status(cairo.get()); status != CAIRO_STATUS_SUCCESS) {
      return Error{std::string("couldn't draw the picture: ") + cairo_status_to_string(status)};
    }
  }
  // Requests to the X server fail silently; a picture that did not come into being cannot be asked for its size.
  if (!pixmapSize(display.get(), pixmap)) return Error{"the X server has no room for the picture"};
  publish(display.get(), pixmap);
  return {};
}

}  // namespace tavelle
