#include "platform/linux/picture/root_window_record.h"

#include <X11/Xatom.h>

#include <memory>
#include <sstream>

#include "platform/linux/handles.h"

namespace tavelle {
namespace {

using PropertyPtr = std::unique_ptr<unsigned char, FreeWith<XFree>>;

constexpr const char* recordProperty = "_TAVELLE_PICTURE";
constexpr const char* imagesProperty = "_TAVELLE_IMAGES";

/// Longer than any list of images, in units of 4 bytes.
constexpr long longestProperty = 1 << 16;

struct Property {
  PropertyPtr bytes;
  unsigned long count = 0;
};

/// The property, if it is of that type and format and complete.
std::optional<Property> property(Display* display, Window window, const char* name, Atom type, int format) {
  Atom actualType = None;
  int actualFormat = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* bytes = nullptr;
  const int status = XGetWindowProperty(display, window, XInternAtom(display, name, False), 0, longestProperty, False,
                                        type, &actualType, &actualFormat, &count, &rest, &bytes);
  if (status != Success) return std::nullopt;
  Property found{PropertyPtr(bytes), count};
  if (actualType != type || actualFormat != format || rest != 0) return std::nullopt;
  return found;
}

/// The one server object that the property names.
std::optional<XID> objectProperty(Display* display, Window window, const char* name, Atom type) {
  const auto found = property(display, window, name, type, 32);
  if (!found || found->count != 1) return std::nullopt;
  // Xlib hands out 32-bit properties as longs.
  return static_cast<XID>(*reinterpret_cast<unsigned long*>(found->bytes.get()));
}

void setObjectProperty(Display* display, Window window, const char* name, Atom type, XID object) {
  XChangeProperty(display, window, XInternAtom(display, name, False), type, 32, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(&object), 1);
}

/// Each image is its rectangle and its path, which may hold every byte but the one that ends it.
std::string textOf(const std::vector<RootRecord::Image>& images) {
  std::string text;
  for (const auto& [place, path] : images) {
    for (const int number : {place.x, place.y, place.width, place.height}) text += std::to_string(number) + " ";
    text += path;
    text += '\0';
  }
  return text;
}

std::vector<RootRecord::Image> imagesOf(const std::string& text) {
  std::vector<RootRecord::Image> images;
  std::istringstream records(text);
  for (std::string record; std::getline(records, record, '\0');) {
    std::istringstream fields(record);
    RootRecord::Image image;
    fields >> image.place.x >> image.place.y >> image.place.width >> image.place.height;
    fields.ignore(1);
    if (std::getline(fields, image.path, '\0')) images.push_back(std::move(image));
  }
  return images;
}

}  // namespace

std::optional<Pixmap> pixmapProperty(Display* display, Window window, const char* name) {
  return objectProperty(display, window, name, XA_PIXMAP);
}

std::optional<RootRecord> readRootRecord(Display* display) {
  const auto window = objectProperty(display, DefaultRootWindow(display), recordProperty, XA_WINDOW);
  if (!window) return std::nullopt;
  const auto pixmap = pixmapProperty(display, *window, recordProperty);
  const auto images = property(display, *window, imagesProperty, XA_STRING, 8);
  if (!pixmap || !images) return std::nullopt;
  return RootRecord{*pixmap, imagesOf({reinterpret_cast<const char*>(images->bytes.get()), images->count})};
}

void writeRootRecord(Display* display, const RootRecord& record) {
  const Window root = DefaultRootWindow(display);
  const Window holder = XCreateWindow(display, root, -1, -1, 1, 1, 0, 0, InputOnly, nullptr, 0, nullptr);
  const std::string images = textOf(record.images);
  setObjectProperty(display, holder, recordProperty, XA_PIXMAP, record.pixmap);
  XChangeProperty(display, holder, XInternAtom(display, imagesProperty, False), XA_STRING, 8, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(images.data()), static_cast<int>(images.size()));
  setObjectProperty(display, root, recordProperty, XA_WINDOW, holder);
}

}  // namespace tavelle
