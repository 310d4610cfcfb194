#include "platform/linux/picture/root_window_picture.h"

#include <X11/Xatom.h>
#include <cairo-xlib.h>
#include <gdk/gdkx.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <vector>

#include "base/text.h"
#include "platform/linux/handles.h"
#include "platform/linux/picture/root_window_record.h"

namespace tavelle {
namespace {

using DisplayPtr = std::unique_ptr<Display, FreeWith<XCloseDisplay>>;
using SurfacePtr = std::unique_ptr<cairo_surface_t, FreeWith<cairo_surface_destroy>>;
using CairoPtr = std::unique_ptr<cairo_t, FreeWith<cairo_destroy>>;

/// The names under which other programs look for the root window's picture, and under which whoever replaces it finds
/// what to free.
constexpr std::array pictureProperties{"_XROOTPMAP_ID", "ESETROOT_PMAP_ID"};

/// The root window's picture, as it says itself.
std::optional<Pixmap> currentPicture(Display* display) {
  return pixmapProperty(display, DefaultRootWindow(display), pictureProperties[0]);
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

/// Fills `target`, which has the root window's size, with what is on the root window now: a picture from before a
/// change of monitors may have another size, and is repeated past its own edges.
void copyCurrentPicture(Display* display, Pixmap target, unsigned width, unsigned height) {
  const int number = DefaultScreen(display);
  XFillRectangle(display, target, DefaultGC(display, number), 0, 0, width, height);
  const auto current = currentPicture(display);
  if (!current) return;
  // The property may be left over from a program that took its pixmap along.
  const auto size = pixmapSize(display, *current);
  if (!size || size->depth != static_cast<unsigned>(DefaultDepth(display, number))) return;
  XGCValues values{};
  values.fill_style = FillTiled;
  values.tile = *current;
  GC context = XCreateGC(display, target, GCFillStyle | GCTile, &values);
  XFillRectangle(display, target, context, 0, 0, width, height);
  XFreeGC(display, context);
}

void paint(cairo_t* cairo, GdkPixbuf* picture, const RootPlace& place) {
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

/// Makes the pixmap the root window's picture and frees the one before, as the convention has it: a picture under both
/// names belongs to a client that has gone and left it behind.
void publish(Display* display, const RootRecord& record) {
  const Window root = DefaultRootWindow(display);
  const auto previous = pixmapProperty(display, root, pictureProperties[1]);
  const bool leftBehind = previous && previous == currentPicture(display);
  for (const char* name : pictureProperties) {
    XChangeProperty(display, root, XInternAtom(display, name, False), XA_PIXMAP, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&record.pixmap), 1);
  }
  writeRootRecord(display, record);
  XSetWindowBackgroundPixmap(display, root, record.pixmap);
  XClearWindow(display, root);
  if (leftBehind) XKillClient(display, *previous);
  XSetCloseDownMode(display, RetainPermanent);
  XSync(display, False);
}

/// A connection of its own: what it makes is left behind when it closes.
DisplayPtr connectTo(GdkDisplay* display) { return DisplayPtr(XOpenDisplay(gdk_display_get_name(display))); }

RootPlace rootPlace(const Screen& screen, const Monitors& monitors) {
  const Rect place = monitors.pixelSpace().toPixels(screen.bounds);
  return {static_cast<int>(std::lround(place.x)), static_cast<int>(std::lround(place.y)),
          static_cast<int>(std::lround(place.width)), static_cast<int>(std::lround(place.height))};
}

bool overlap(const RootPlace& a, const RootPlace& b) {
  return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

/// What is on the root window when `image` has been painted over what is there now. What no longer lies whole on a root
/// window of that size is forgotten.
std::vector<RootRecord::Image> imagesWith(const RootRecord::Image& image, Display* display, int width, int height) {
  std::vector<RootRecord::Image> images;
  if (auto before = readRootRecord(display); before && before->pixmap == currentPicture(display)) {
    images = std::move(before->images);
  }
  std::erase_if(images, [&](const RootRecord::Image& each) {
    const RootPlace& place = each.place;
    return overlap(place, image.place) || place.x + place.width > width || place.y + place.height > height;
  });
  images.push_back(image);
  return images;
}

}  // namespace

Result<void> RootWindowPicture::set(const std::filesystem::path& image, const Screen& screen) {
  ErrorSlot error;
  const auto file = adopt(gdk_pixbuf_new_from_file(image.c_str(), error.out()));
  if (!file) return Error{escapedUtf8(image.native()) + ": " + escapedUtf8(error.message())};
  const auto upright = adopt(gdk_pixbuf_apply_embedded_orientation(file.get()));

  const DisplayPtr display = connectTo(monitors_.display());
  if (!display) return Error{"couldn't connect to the X server"};
  const int number = DefaultScreen(display.get());
  const int width = DisplayWidth(display.get(), number);
  const int height = DisplayHeight(display.get(), number);
  const RootPlace place = rootPlace(screen, monitors_);
  const Pixmap pixmap =
      XCreatePixmap(display.get(), DefaultRootWindow(display.get()), static_cast<unsigned>(width),
                    static_cast<unsigned>(height), static_cast<unsigned>(DefaultDepth(display.get(), number)));
  copyCurrentPicture(display.get(), pixmap, static_cast<unsigned>(width), static_cast<unsigned>(height));
  {
    const SurfacePtr surface = surfaceOf(display.get(), pixmap, width, height);
    const CairoPtr cairo(cairo_create(surface.get()));
    paint(cairo.get(), upright.get(), place);
    cairo_surface_flush(surface.get());
    if (const auto status = cairo_status(cairo.get()); status != CAIRO_STATUS_SUCCESS) {
      return Error{std::string("couldn't draw the picture: ") + cairo_status_to_string(status)};
    }
  }
  // Requests to the X server fail silently; a picture that did not come into being cannot be asked for its size.
  if (!pixmapSize(display.get(), pixmap)) return Error{"the X server has no room for the picture"};
  publish(display.get(), {pixmap, imagesWith({place, image.native()}, display.get(), width, height)});
  return {};
}

Result<std::string> RootWindowPicture::png() const {
  const DisplayPtr display = connectTo(monitors_.display());
  const auto shown = display ? currentPicture(display.get()) : std::nullopt;
  const auto size = shown ? pixmapSize(display.get(), *shown) : std::nullopt;
  if (!size) return Error{"the root window has no picture"};
  const int width = static_cast<int>(size->width);
  const int height = static_cast<int>(size->height);
  const SurfacePtr surface = surfaceOf(display.get(), *shown, width, height);
  const auto pixels = adopt(gdk_pixbuf_get_from_surface(surface.get(), 0, 0, width, height));
  if (!pixels) return Error{"the X server does not give the root window's picture"};
  ErrorSlot error;
  char* bytes = nullptr;
  gsize count = 0;
  if (!gdk_pixbuf_save_to_buffer(pixels.get(), &bytes, &count, "png", error.out(), "compression", "1", nullptr)) {
    return Error{std::string("couldn't make a file of the picture: ") + error.message()};
  }
  const GCharPtr owned(bytes);
  return std::string(bytes, count);
}

std::optional<std::string> RootWindowPicture::current(const Screen& screen) const {
  const DisplayPtr display = connectTo(monitors_.display());
  if (!display) return std::nullopt;
  const auto shown = currentPicture(display.get());
  if (!shown) return std::nullopt;
  const auto record = readRootRecord(display.get());
  if (!record || record->pixmap != *shown) return "pixmap " + std::to_string(*shown);
  const RootPlace place = rootPlace(screen, monitors_);
  const auto found = std::find_if(record->images.begin(), record->images.end(),
                                  [&](const RootRecord::Image& each) { return each.place == place; });
  return found == record->images.end() ? std::nullopt : std::optional("image " + found->path);
}

}  // namespace tavelle
