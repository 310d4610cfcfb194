#include "platform/linux/x11/panel_areas.h"

#include <gdk/gdkx.h>

#include <array>
#include <limits>

#include "platform/linux/struts.h"

namespace tavelle {
namespace {

/// The atoms' places among `atomNames`.
enum AtomIndex : std::size_t { clientList, currentDesktop, wmDesktop, partialStrut, plainStrut };

constexpr std::array<std::string_view, 5> atomNames{"_NET_CLIENT_LIST", "_NET_CURRENT_DESKTOP", "_NET_WM_DESKTOP",
                                                    "_NET_WM_STRUT_PARTIAL", "_NET_WM_STRUT"};

/// The order in which both strut properties give the four edges.
constexpr std::array edges{Strut::Edge::left, Strut::Edge::right, Strut::Edge::top, Strut::Edge::bottom};

/// The struts that a window asks for: the property that says where along the edges the window is, else the older one
/// that doesn't.
std::vector<Strut> strutsOf(const std::vector<std::uint32_t>& partial, const std::vector<std::uint32_t>& plain,
                            double scale) {
  const auto& depths = partial.size() == 12 ? partial : plain;
  std::vector<Strut> struts;
  if (depths.size() < edges.size()) return struts;
  for (std::size_t i = 0; i < edges.size(); ++i) {
    if (depths[i] == 0) continue;
    Strut strut{.edge = edges[i], .depth = depths[i] / scale, .from = 0, .to = std::numeric_limits<double>::infinity()};
    if (depths.size() == 12) {
      // Both places count as part of the strip.
      strut.from = depths[4 + 2 * i] / scale;
      strut.to = (depths[5 + 2 * i] + 1.0) / scale;
    }
    struts.push_back(strut);
  }
  return struts;
}

}  // namespace

PanelAreas::PanelAreas(const XConnection& connection, const Monitors& monitors)
    : connection_(connection), monitors_(monitors), atoms_(internAtoms(connection, atomNames)) {}

std::vector<Rect> PanelAreas::of(const std::vector<GdkMonitor*>& monitors) const {
  // The one work area that all window managers tell is that of all monitors together, of use only where there is but
  // one. For several, some managers tell each monitor's own; elsewhere the panels have to be asked.
  const bool managerTells =
      monitors.size() == 1 || gdk_x11_screen_supports_net_wm_hint(gdk_display_get_default_screen(monitors_.display()),
                                                                  gdk_atom_intern_static_string("_GTK_WORKAREAS"));
  if (!managerTells) return askPanels(monitors);
  std::vector<Rect> areas;
  areas.reserve(monitors.size());
  for (GdkMonitor* monitor : monitors) {
    GdkRectangle area;
    gdk_monitor_get_workarea(monitor, &area);
    areas.push_back(rectOf(area));
  }
  return areas;
}

std::vector<Rect> PanelAreas::askPanels(const std::vector<GdkMonitor*>& monitors) const {
  GeometryRequest picture(connection_, xcb_get_geometry(connection_.get(), connection_.root()));
  PropertyRequest current(connection_, connection_.root(), atoms_[currentDesktop]);
  PropertyRequest clients(connection_, connection_.root(), atoms_[clientList]);

  struct WindowRequest {
    xcb_window_t window;
    PropertyRequest partial;
    PropertyRequest plain;
  };
  std::vector<WindowRequest> requests;
  for (const xcb_window_t window : clients.read()) {
    requests.push_back(
        {window, {connection_, window, atoms_[partialStrut]}, {connection_, window, atoms_[plainStrut]}});
  }
  const double scale = monitors_.pixelSpace().scale;
  const auto here = current.readFirst();
  std::vector<Strut> struts;
  for (auto& [window, partial, plain] : requests) {
    const auto own = strutsOf(partial.read(), plain.read(), scale);
    // There are few panels among the windows, so only they are asked where they are.
    if (own.empty() || !isOnDesktop(PropertyRequest(connection_, window, atoms_[wmDesktop]).readFirst(), here))
      continue;
    struts.insert(struts.end(), own.begin(), own.end());
  }

  auto areas = monitors_.placesOf(monitors);
  if (const auto size = picture.read()) {
    for (Rect& area : areas) area = workArea(area, size->width / scale, size->height / scale, struts);
  }
  return areas;
}

}  // namespace tavelle
