#include "platform/linux/x11/desktop_windows.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/linux/x11/x11_wallpaper_window.h"

namespace tavelle {
namespace {

enum AtomIndex : std::size_t { clientList, clientListStacking, rootPixmap, windowType, typeDesktop, mark };
constexpr std::array<std::string_view, 6> atomNames{
    "_NET_CLIENT_LIST",    "_NET_CLIENT_LIST_STACKING",   "_XROOTPMAP_ID",
    "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_DESKTOP", wallpaperMark};

constexpr int depthWithAlpha = 32;

}  // namespace

/// All that is asked about one window.
class DesktopWindows::Request {
 public:
  Request(const XConnection& connection, xcb_window_t window, const std::vector<xcb_atom_t>& atoms)
      : desktop_(atoms[typeDesktop]),
        type_(connection, window, atoms[windowType]),
        mark_(connection, window, atoms[mark]),
        attributes_(connection, xcb_get_window_attributes(connection.get(), window)),
        geometry_(connection, xcb_get_geometry(connection.get(), window)),
        origin_(connection, xcb_translate_coordinates(connection.get(), window, connection.root(), 0, 0)) {}

  /// None for another kind of window, one of this program's, and one that is not on screen.
  std::optional<DesktopWindow> read() {
    const auto types = type_.read();
    if (std::find(types.begin(), types.end(), desktop_) == types.end() || mark_.readFirst()) return std::nullopt;
    const auto attributes = attributes_.read();
    const auto geometry = geometry_.read();
    const auto origin = origin_.read();
    if (!attributes || !geometry || !origin || attributes->map_state != XCB_MAP_STATE_VIEWABLE) return std::nullopt;
    return DesktopWindow{.place = {static_cast<double>(origin->dst_x), static_cast<double>(origin->dst_y),
                                   static_cast<double>(geometry->width), static_cast<double>(geometry->height)},
                         .isOpaque = geometry->depth != depthWithAlpha};
  }

 private:
  xcb_atom_t desktop_;
  PropertyRequest type_;
  PropertyRequest mark_;
  AttributesRequest attributes_;
  GeometryRequest geometry_;
  TranslateRequest origin_;
};

DesktopWindows::DesktopWindows(const XConnection& connection)
    : connection_(connection), atoms_(internAtoms(connection, atomNames)) {}

std::map<xcb_window_t, DesktopWindow> DesktopWindows::list() const {
  const auto managed = PropertyRequest(connection_, connection_.root(), atoms_[clientList]).read();
  std::vector<Request> requests;
  requests.reserve(managed.size());
  for (const xcb_window_t window : managed) requests.emplace_back(connection_, window, atoms_);
  std::map<xcb_window_t, DesktopWindow> found;
  for (std::size_t i = 0; i < managed.size(); ++i) {
    if (const auto desktop = requests[i].read()) found.emplace(managed[i], *desktop);
  }
  return found;
}

std::vector<xcb_window_t> DesktopWindows::stacking() const {
  return PropertyRequest(connection_, connection_.root(), atoms_[clientListStacking]).read();
}

std::optional<xcb_pixmap_t> DesktopWindows::picture() const {
  return PropertyRequest(connection_, connection_.root(), atoms_[rootPixmap]).readFirst();
}

xcb_atom_t DesktopWindows::listProperty() const { return atoms_[clientList]; }
xcb_atom_t DesktopWindows::stackingProperty() const { return atoms_[clientListStacking]; }
xcb_atom_t DesktopWindows::pictureProperty() const { return atoms_[rootPixmap]; }

}  // namespace tavelle
