#include "platform/linux/x11/x11_window_manager.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <string_view>

#include "platform/linux/x11/property_watch.h"
#include "platform/linux/x11/x11_shared_desktop.h"
#include "platform/linux/x11/x11_wallpaper_window.h"

namespace tavelle {
namespace {

/// The atoms' places among `atomNames`.
enum AtomIndex : std::size_t {
  stackingList,
  clientList,
  currentDesktop,
  showingDesktop,
  wmDesktop,
  wmState,
  stateHidden,
  stateShaded,
  stateFullscreen,
  wmPid,
  wmOpacity,
  frameExtents,
  shadowExtents,
  ourWallpaper,
  windowType,
  typeDesktop,
  typeNormal,
  typeDialog,
  typeUtility,
  firstFloatingType
};

constexpr std::array<std::string_view, 29> atomNames{"_NET_CLIENT_LIST_STACKING",
                                                     "_NET_CLIENT_LIST",
                                                     "_NET_CURRENT_DESKTOP",
                                                     "_NET_SHOWING_DESKTOP",
                                                     "_NET_WM_DESKTOP",
                                                     "_NET_WM_STATE",
                                                     "_NET_WM_STATE_HIDDEN",
                                                     "_NET_WM_STATE_SHADED",
                                                     "_NET_WM_STATE_FULLSCREEN",
                                                     "_NET_WM_PID",
                                                     "_NET_WM_WINDOW_OPACITY",
                                                     "_NET_FRAME_EXTENTS",
                                                     "_GTK_FRAME_EXTENTS",
                                                     wallpaperMark,
                                                     "_NET_WM_WINDOW_TYPE",
                                                     "_NET_WM_WINDOW_TYPE_DESKTOP",
                                                     "_NET_WM_WINDOW_TYPE_NORMAL",
                                                     "_NET_WM_WINDOW_TYPE_DIALOG",
                                                     "_NET_WM_WINDOW_TYPE_UTILITY",
                                                     "_NET_WM_WINDOW_TYPE_DOCK",
                                                     "_NET_WM_WINDOW_TYPE_TOOLBAR",
                                                     "_NET_WM_WINDOW_TYPE_MENU",
                                                     "_NET_WM_WINDOW_TYPE_SPLASH",
                                                     "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
                                                     "_NET_WM_WINDOW_TYPE_POPUP_MENU",
                                                     "_NET_WM_WINDOW_TYPE_TOOLTIP",
                                                     "_NET_WM_WINDOW_TYPE_NOTIFICATION",
                                                     "_NET_WM_WINDOW_TYPE_COMBO",
                                                     "_NET_WM_WINDOW_TYPE_DND"};

constexpr int ordinaryLayer = 0;
/// The server knows no numbers for layers; all that programs can tell is "not an ordinary window".
constexpr int floatingLayer = 1;

bool contains(const std::vector<std::uint32_t>& values, std::uint32_t value) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

/// What lies around a window's own rectangle (or, of a shadow, inside it), in pixels.
struct Extents {
  double left = 0;
  double right = 0;
  double top = 0;
  double bottom = 0;
};

Extents extentsOf(const std::vector<std::uint32_t>& values) {
  if (values.size() != 4) return {};
  return {static_cast<double>(values[0]), static_cast<double>(values[1]), static_cast<double>(values[2]),
          static_cast<double>(values[3])};
}

Rect grown(const Rect& rect, const Extents& by) {
  return {rect.x - by.left, rect.y - by.top, rect.width + by.left + by.right, rect.height + by.top + by.bottom};
}

Rect shrunk(const Rect& rect, const Extents& by) { return grown(rect, {-by.left, -by.right, -by.top, -by.bottom}); }

}  // namespace

/// Everything that is asked about one window.
class X11WindowManager::WindowRequest {
 public:
  WindowRequest(const XConnection& connection, xcb_window_t window, const std::vector<xcb_atom_t>& atoms,
                const PixelSpace& space)
      : atoms_(atoms),
        space_(space),
        attributes_(connection, xcb_get_window_attributes(connection.get(), window)),
        geometry_(connection, xcb_get_geometry(connection.get(), window)),
        origin_(connection, xcb_translate_coordinates(connection.get(), window, connection.root(), 0, 0)),
        mark_(connection, window, atoms[ourWallpaper]),
        type_(connection, window, atoms[windowType]),
        state_(connection, window, atoms[wmState]),
        desktop_(connection, window, atoms[wmDesktop]),
        pid_(connection, window, atoms[wmPid]),
        opacity_(connection, window, atoms[wmOpacity]),
        frame_(connection, window, atoms[frameExtents]),
        shadow_(connection, window, atoms[shadowExtents]) {}

  /// What a window is part of.
  enum class Part { application, furniture, desktop, wallpaper };
  struct Seen {
    Part part;
    WindowDescription window;
    /// Whether its pixels have an alpha of their own.
    bool hasAlpha;
  };

  /// None when the window is not on screen, or is no more. `desktop` is the current one, if there is such a thing.
  std::optional<Seen> read(std::optional<std::uint32_t> desktop) {
    const auto attributes = attributes_.read();
    const auto state = state_.read();
    if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE) return std::nullopt;
    // Where windows stay mapped to be shown in previews, only the manager's word tells that they are out of sight.
    if (contains(state, atoms_[stateHidden]) && !contains(state, atoms_[stateShaded])) return std::nullopt;
    if (!isOnDesktop(desktop_.readFirst(), desktop)) return std::nullopt;
    const Part part = readPart();
    const int layer = part == Part::furniture ? floatingLayer : ordinaryLayer;
    const auto geometry = geometry_.read();
    constexpr int depthWithAlpha = 32;
    return Seen{.part = part,
                .window = {.layer = layer,
                           .owner = readOwner(),
                           .alpha = readAlpha(),
                           .bounds = geometry ? readBounds(*geometry, state) : std::nullopt},
                .hasAlpha = geometry && geometry->depth == depthWithAlpha};
  }

 private:
  Part readPart() {
    if (mark_.readFirst()) return Part::wallpaper;
    // The first type that is known counts; what has none is ordinary, since it is managed.
    for (const std::uint32_t type : type_.read()) {
      if (type == atoms_[typeDesktop]) return Part::desktop;
      if (type == atoms_[typeNormal] || type == atoms_[typeDialog] || type == atoms_[typeUtility]) break;
      if (std::find(atoms_.begin() + firstFloatingType, atoms_.end(), type) != atoms_.end()) return Part::furniture;
    }
    return Part::application;
  }

  std::optional<std::int32_t> readOwner() {
    const auto pid = pid_.readFirst();
    if (!pid || *pid > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
    return static_cast<std::int32_t>(*pid);
  }

  std::optional<double> readAlpha() {
    const auto opacity = opacity_.readFirst();
    if (!opacity) return std::nullopt;
    return *opacity / static_cast<double>(std::numeric_limits<std::uint32_t>::max());
  }

  std::optional<Rect> readBounds(const xcb_get_geometry_reply_t& geometry, const std::vector<std::uint32_t>& state) {
    const auto origin = origin_.read();
    if (!origin) return std::nullopt;
    const double border = geometry.border_width;
    const Rect own{origin->dst_x - border, origin->dst_y - border, geometry.width + 2 * border,
                   geometry.height + 2 * border};
    // A full-screen window has neither, whatever its properties still say.
    if (contains(state, atoms_[stateFullscreen])) return space_.toGlobal(own);
    const Extents frame = extentsOf(frame_.read());
    Rect visible = grown(shrunk(own, extentsOf(shadow_.read())), frame);
    // Of a window that is rolled up there is only the frame.
    if (contains(state, atoms_[stateShaded])) visible.height = frame.top + frame.bottom;
    return space_.toGlobal(visible);
  }

  const std::vector<xcb_atom_t>& atoms_;
  const PixelSpace& space_;
  AttributesRequest attributes_;
  GeometryRequest geometry_;
  TranslateRequest origin_;
  PropertyRequest mark_;
  PropertyRequest type_;
  PropertyRequest state_;
  PropertyRequest desktop_;
  PropertyRequest pid_;
  PropertyRequest opacity_;
  PropertyRequest frame_;
  PropertyRequest shadow_;
};

X11WindowManager::X11WindowManager(const XConnection& connection, const Monitors& monitors,
                                   const X11SharedDesktop& sharedDesktop)
    : connection_(connection),
      monitors_(monitors),
      sharedDesktop_(sharedDesktop),
      panels_(connection, monitors),
      atoms_(internAtoms(connection, atomNames)) {}

/// Gathers, from the front to the back, what hides desktops and wallpapers.
struct X11WindowManager::Sight {
  /// Whether ordinary windows have been swept away to show the desktop.
  const bool sweptAway;
  /// Whether windows with an alpha channel show what lies behind them.
  const bool alphaShows;
  const X11SharedDesktop& sharedDesktop;
  std::vector<WindowDescription> windows{};
  /// Windows of file managers and shells for all of the desktop, through which nothing can be seen.
  std::vector<Rect> desktops{};

  void add(const WindowRequest::Seen& seen) {
    const auto& [part, window, hasAlpha] = seen;
    using enum WindowRequest::Part;
    if (part == wallpaper) {
      hide(window.bounds.value_or(Rect{}));
    } else if (part == desktop) {
      if (window.bounds && !(hasAlpha && alphaShows)) desktops.push_back(*window.bounds);
    } else if (part == furniture || !sweptAway) {
      windows.push_back(window);
    }
  }

 private:
  void hide(const Rect& wallpaper) {
    if (desktops.empty() || sharedDesktop.isPuttingRight()) return;
    for (const Rect& each : desktops) {
      const Rect hidden = intersection(each, wallpaper);
      if (!hidden.isEmpty()) windows.push_back({.layer = ordinaryLayer, .owner = {}, .alpha = {}, .bounds = hidden});
    }
  }
};

std::optional<std::vector<WindowDescription>> X11WindowManager::onScreen() const {
  PropertyRequest stacking(connection_, connection_.root(), atoms_[stackingList]);
  PropertyRequest unordered(connection_, connection_.root(), atoms_[clientList]);
  PropertyRequest current(connection_, connection_.root(), atoms_[currentDesktop]);
  PropertyRequest showing(connection_, connection_.root(), atoms_[showingDesktop]);
  auto windows = stacking.read();
  // Some small window managers keep no order.
  if (windows.empty()) windows = unordered.read();
  if (!connection_.isAlive()) return std::nullopt;
  const auto desktop = current.readFirst();
  const bool sweptAway = showing.readFirst() == 1U;

  const PixelSpace space = monitors_.pixelSpace();
  std::vector<WindowRequest> requests;
  requests.reserve(windows.size());
  std::for_each(windows.rbegin(), windows.rend(),
                [&](xcb_window_t window) { requests.emplace_back(connection_, window, atoms_, space); });
  const bool composited = gdk_screen_is_composited(gdk_display_get_default_screen(monitors_.display())) != FALSE;
  Sight sight{.sweptAway = sweptAway, .alphaShows = composited, .sharedDesktop = sharedDesktop_};
  for (WindowRequest& request : requests) {
    if (const auto seen = request.read(desktop)) sight.add(*seen);
  }
  return std::move(sight.windows);
}

Registration X11WindowManager::onWindowEvent(std::function<void()> happened) {
  constexpr std::array<std::string_view, 3> ofRoot{"_NET_ACTIVE_WINDOW", "_NET_CURRENT_DESKTOP",
                                                   "_NET_SHOWING_DESKTOP"};
  // Minimised or not.
  constexpr std::array<std::string_view, 1> ofClients{"WM_STATE"};
  return Registration(
      [watch = std::make_shared<PropertyWatch>(connection_, ofRoot, ofClients, std::move(happened))] {});
}

}  // namespace tavelle
