#include "platform/linux/x11/desktop_icons.h"

#include <glib-unix.h>
#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/shape.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "platform/linux/x11/icon_mask.h"
#include "platform/linux/x11/screen_images.h"
#include "platform/linux/x11/x11_wallpaper_window.h"

namespace tavelle {
namespace {

/// What changes together is looked at together: a file manager draws an icon in several steps.
constexpr guint settlingTime = 20;
/// More of a desktop than that is no icons: the picture is another one, or about to become one.
constexpr double mostIcons = 0.5;
/// Areas of change that are told one by one; more than that, and all of what lies between them is looked at.
constexpr std::size_t mostAreas = 32;

constexpr std::uint8_t sentEvent = 0x80;

enum AtomIndex : std::size_t { clientList, picture, windowType, typeDesktop, mark };
constexpr std::array<std::string_view, 5> atomNames{"_NET_CLIENT_LIST", "_XROOTPMAP_ID", "_NET_WM_WINDOW_TYPE",
                                                    "_NET_WM_WINDOW_TYPE_DESKTOP", wallpaperMark};

Rect rectOf(const xcb_rectangle_t& rectangle) {
  return {static_cast<double>(rectangle.x), static_cast<double>(rectangle.y), static_cast<double>(rectangle.width),
          static_cast<double>(rectangle.height)};
}

/// An area in horizontal strips that can be read at once.
std::vector<Rect> strips(const Rect& area) {
  const double most = std::max(1.0, std::floor(static_cast<double>(ScreenImages::mostPixels) / area.width));
  std::vector<Rect> found;
  for (double y = area.y; y < area.maxY(); y += most) {
    found.push_back({area.x, y, area.width, std::min(most, area.maxY() - y)});
  }
  return found;
}

}  // namespace

class DesktopIcons::Watch {
 public:
  explicit Watch(const XConnection& server);
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch();

  void add(xcb_window_t wallpaper);
  void remove(xcb_window_t wallpaper) { wallpapers_.erase(wallpaper); }

 private:
  /// A file manager's window for the desktop.
  struct Desktop {
    Rect place;
    xcb_damage_damage_t damage;
    IconMask icons;
    /// What may have changed since it was looked at.
    std::vector<Rect> areas;
  };

  static gboolean readable(int descriptor, GIOCondition condition, gpointer self);
  bool drain();
  void take(const xcb_generic_event_t& event);
  void lookSoon();
  void look();
  void findDesktops();
  std::optional<Rect> placeOfDesktop(xcb_window_t window);
  void watchDesktop(xcb_window_t window, const Rect& place);
  void allHasChanged();
  bool compare(xcb_window_t window, Desktop& desktop);
  void shape(xcb_window_t wallpaper);

  const XConnection connection_;
  const std::vector<xcb_atom_t> atoms_;
  const std::uint8_t firstDamageEvent_;
  ScreenImages images_{connection_};
  std::set<xcb_window_t> wallpapers_;
  std::map<xcb_window_t, Desktop> desktops_;
  bool isListStale_ = true;
  guint source_ = 0;
  guint looking_ = 0;
};

DesktopIcons::Watch::Watch(const XConnection& server)
    : connection_(server.another()),
      atoms_(internAtoms(connection_, atomNames)),
      firstDamageEvent_(xcb_get_extension_data(connection_.get(), &xcb_damage_id)->first_event) {
  xcb_connection_t* const x = connection_.get();
  xcb_discard_reply(x, xcb_damage_query_version(x, XCB_DAMAGE_MAJOR_VERSION, XCB_DAMAGE_MINOR_VERSION).sequence);
  xcb_discard_reply(x, xcb_composite_query_version(x, 0, 4).sequence);
  constexpr std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(x, connection_.root(), XCB_CW_EVENT_MASK, &mask);
  xcb_flush(x);
  source_ = g_unix_fd_add(xcb_get_file_descriptor(x), G_IO_IN, readable, this);
}

DesktopIcons::Watch::~Watch() {
  if (source_ != 0) g_source_remove(source_);
  if (looking_ != 0) g_source_remove(looking_);
}

void DesktopIcons::Watch::add(xcb_window_t wallpaper) {
  wallpapers_.insert(wallpaper);
  isListStale_ = true;
  lookSoon();
}

gboolean DesktopIcons::Watch::readable(int /*descriptor*/, GIOCondition /*condition*/, gpointer data) {
  auto* const self = static_cast<Watch*>(data);
  if (self->drain()) return G_SOURCE_CONTINUE;
  self->source_ = 0;
  return G_SOURCE_REMOVE;
}

/// Takes all events there are. Whether more can come.
bool DesktopIcons::Watch::drain() {
  while (const AllocatedPtr<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) take(*event);
  return connection_.isAlive();
}

void DesktopIcons::Watch::take(const xcb_generic_event_t& event) {
  const std::uint8_t type = event.response_type & ~sentEvent;
  if (type == firstDamageEvent_ + XCB_DAMAGE_NOTIFY) {
    const auto& damage = reinterpret_cast<const xcb_damage_notify_event_t&>(event);
    const auto found = desktops_.find(damage.drawable);
    if (found == desktops_.end()) return;
    auto& areas = found->second.areas;
    areas.push_back(rectOf(damage.area));
    if (areas.size() > mostAreas) {
      Rect all = areas.front();
      for (const Rect& each : areas) all = tavelle::around(all, each);
      areas = {all};
    }
    return lookSoon();
  }
  if (type == XCB_PROPERTY_NOTIFY) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (change.atom == atoms_[picture]) {
      allHasChanged();
    } else if (change.atom == atoms_[clientList]) {
      isListStale_ = true;
    } else {
      return;
    }
    return lookSoon();
  }
  if (type == XCB_CONFIGURE_NOTIFY || type == XCB_UNMAP_NOTIFY || type == XCB_MAP_NOTIFY ||
      type == XCB_DESTROY_NOTIFY) {
    isListStale_ = true;
    lookSoon();
  }
}

void DesktopIcons::Watch::allHasChanged() {
  for (auto& [window, desktop] : desktops_) desktop.areas = {{0, 0, desktop.place.width, desktop.place.height}};
}

void DesktopIcons::Watch::lookSoon() {
  if (looking_ != 0) return;
  looking_ = g_timeout_add(
      settlingTime,
      [](gpointer self) -> gboolean {
        static_cast<Watch*>(self)->looking_ = 0;
        static_cast<Watch*>(self)->look();
        return G_SOURCE_REMOVE;
      },
      this);
}

void DesktopIcons::Watch::look() {
  bool changed = std::exchange(isListStale_, false);
  if (changed) findDesktops();
  for (auto& [window, desktop] : desktops_) changed = compare(window, desktop) || changed;
  if (changed) {
    for (const xcb_window_t wallpaper : wallpapers_) shape(wallpaper);
  }
  xcb_flush(connection_.get());
  // What has come in while the server was asked would not make the descriptor readable again.
  drain();
}

void DesktopIcons::Watch::findDesktops() {
  std::map<xcb_window_t, Rect> found;
  for (const xcb_window_t window : PropertyRequest(connection_, connection_.root(), atoms_[clientList]).read()) {
    if (const auto place = placeOfDesktop(window)) found.emplace(window, *place);
  }
  std::erase_if(desktops_, [&](const auto& each) {
    const auto still = found.find(each.first);
    const bool same = still != found.end() && still->second == each.second.place;
    // Of one that has gone the server refuses this, and nobody hears of it.
    if (!same) xcb_damage_destroy(connection_.get(), each.second.damage);
    return !same;
  });
  for (const auto& [window, place] : found) {
    if (!desktops_.contains(window)) watchDesktop(window, place);
  }
}

/// None for another kind of window.
std::optional<Rect> DesktopIcons::Watch::placeOfDesktop(xcb_window_t window) {
  xcb_connection_t* const x = connection_.get();
  PropertyRequest type(connection_, window, atoms_[windowType]);
  PropertyRequest ours(connection_, window, atoms_[mark]);
  AttributesRequest attributesAsked(connection_, xcb_get_window_attributes(x, window));
  GeometryRequest geometryAsked(connection_, xcb_get_geometry(x, window));
  TranslateRequest originAsked(connection_, xcb_translate_coordinates(x, window, connection_.root(), 0, 0));
  const auto types = type.read();
  const bool isOurs = ours.readFirst().has_value();
  const auto attributes = attributesAsked.read();
  const auto geometry = geometryAsked.read();
  const auto origin = originAsked.read();
  if (!attributes || !geometry || !origin || isOurs) return std::nullopt;
  if (std::find(types.begin(), types.end(), atoms_[typeDesktop]) == types.end()) return std::nullopt;
  // One with an alpha channel needs nothing left out.
  constexpr int opaqueDepth = 24;
  if (attributes->map_state != XCB_MAP_STATE_VIEWABLE || geometry->depth != opaqueDepth) return std::nullopt;
  return Rect{static_cast<double>(origin->dst_x), static_cast<double>(origin->dst_y),
              static_cast<double>(geometry->width), static_cast<double>(geometry->height)};
}

void DesktopIcons::Watch::watchDesktop(xcb_window_t window, const Rect& place) {
  xcb_connection_t* const x = connection_.get();
  constexpr std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(x, window, XCB_CW_EVENT_MASK, &mask);
  // Kept in full behind the wallpapers, also where nobody composes the screen.
  xcb_composite_redirect_window(x, window, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
  const xcb_damage_damage_t damage = xcb_generate_id(x);
  xcb_damage_create(x, damage, window, XCB_DAMAGE_REPORT_LEVEL_DELTA_RECTANGLES);
  desktops_.emplace(window, Desktop{.place = place,
                                    .damage = damage,
                                    .icons = IconMask(static_cast<int>(place.width), static_cast<int>(place.height)),
                                    .areas = {{0, 0, place.width, place.height}}});
}

/// Whether other pixels than before are icons now.
bool DesktopIcons::Watch::compare(xcb_window_t window, Desktop& desktop) {
  const auto areas = std::exchange(desktop.areas, {});
  if (areas.empty()) return false;
  // Before the look: what changes from here on is told again.
  xcb_damage_subtract(connection_.get(), desktop.damage, XCB_NONE, XCB_NONE);
  const auto pixmap = PropertyRequest(connection_, connection_.root(), atoms_[picture]).readFirst();
  if (!pixmap) return false;
  bool changed = false;
  for (const Rect& area : areas) {
    for (const Rect& strip : strips(intersection(area, {0, 0, desktop.place.width, desktop.place.height}))) {
      const auto shown = images_.read(0, window, strip);
      const auto plain =
          images_.read(1, *pixmap, {desktop.place.x + strip.x, desktop.place.y + strip.y, strip.width, strip.height});
      // What has gone meanwhile, or is of another size, is told of in another way.
      if (!shown || !plain) return changed;
      changed = desktop.icons.compare(strip, *shown, *plain) || changed;
    }
  }
  return changed;
}

void DesktopIcons::Watch::shape(xcb_window_t wallpaper) {
  xcb_connection_t* const x = connection_.get();
  GeometryRequest geometryAsked(connection_, xcb_get_geometry(x, wallpaper));
  TranslateRequest originAsked(connection_, xcb_translate_coordinates(x, wallpaper, connection_.root(), 0, 0));
  const auto geometry = geometryAsked.read();
  const auto origin = originAsked.read();
  if (!geometry || !origin) return;
  const Rect place{static_cast<double>(origin->dst_x), static_cast<double>(origin->dst_y),
                   static_cast<double>(geometry->width), static_cast<double>(geometry->height)};
  const auto below = std::find_if(desktops_.begin(), desktops_.end(), [&](const auto& each) {
    return !intersection(place, each.second.place).isEmpty() && each.second.icons.share() < mostIcons;
  });
  if (below == desktops_.end()) {
    xcb_shape_mask(x, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, wallpaper, 0, 0, XCB_NONE);
    return;
  }
  const Desktop& desktop = below->second;
  std::vector<xcb_rectangle_t> rectangles;
  for (const Rect& each :
       desktop.icons.around({place.x - desktop.place.x, place.y - desktop.place.y, place.width, place.height})) {
    rectangles.push_back({static_cast<std::int16_t>(each.x), static_cast<std::int16_t>(each.y),
                          static_cast<std::uint16_t>(each.width), static_cast<std::uint16_t>(each.height)});
  }
  xcb_shape_rectangles(x, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_YX_BANDED, wallpaper, 0, 0,
                       static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

DesktopIcons::DesktopIcons(const XConnection& server) : server_(server) {}
DesktopIcons::~DesktopIcons() = default;

Registration DesktopIcons::keepInSight(xcb_window_t wallpaper) {
  if (!watch_) watch_ = std::make_shared<Watch>(server_);
  watch_->add(wallpaper);
  return Registration([watch = std::weak_ptr<Watch>(watch_), wallpaper] {
    if (const auto alive = watch.lock()) alive->remove(wallpaper);
  });
}

}  // namespace tavelle
