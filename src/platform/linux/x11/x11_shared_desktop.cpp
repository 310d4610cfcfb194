#include "platform/linux/x11/x11_shared_desktop.h"

#include <glib-unix.h>
#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/shape.h>

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "platform/linux/glib_main_loop.h"
#include "platform/linux/x11/brief_window.h"
#include "platform/linux/x11/desktop_windows.h"
#include "platform/linux/x11/icon_cutout.h"

namespace tavelle {
namespace {

/// What changes together is looked at together: a file manager draws an icon in several steps.
constexpr std::chrono::milliseconds settlingTime{20};
/// What can't be looked at while windows and pictures come and go is tried again so often, and no oftener.
constexpr std::chrono::seconds pause{1};
constexpr int mostTries = 10;
/// Troubles that pass sooner, as at the start of a session, are none.
constexpr std::chrono::seconds patience{10};
/// A user's clicks have a wallpaper brought back to its place a few times a second; more is a program that fights for
/// the same place.
constexpr int mostMoves = 30;
constexpr std::chrono::seconds mostMovesIn{3};

constexpr std::array<std::string_view, 1> restackName{"_NET_RESTACK_WINDOW"};
constexpr std::uint8_t sentEvent = 0x80;

Rect rectOf(const xcb_rectangle_t& rectangle) {
  return {static_cast<double>(rectangle.x), static_cast<double>(rectangle.y), static_cast<double>(rectangle.width),
          static_cast<double>(rectangle.height)};
}

}  // namespace

class X11SharedDesktop::Watch {
 public:
  Watch(const X11SharedDesktop& owner, const XConnection& server);
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch();

  bool isPuttingRight() {
    // The one who asks may have seen it first.
    keepOrder();
    return moves_ > 0 && moves_ < mostMoves;
  }
  void add(xcb_window_t wallpaper);
  void remove(xcb_window_t wallpaper) { wallpapers_.erase(wallpaper); }

 private:
  struct Desktop {
    DesktopWindow window;
    /// Of an opaque one.
    std::unique_ptr<IconCutout> icons;
  };

  static gboolean readable(int descriptor, GIOCondition condition, gpointer self);
  bool drain();
  void take(const xcb_generic_event_t& event);
  bool takeProperty(xcb_atom_t property);
  void lookSoon();
  void lookAgain();
  void look();
  void findDesktops();
  Desktop watched(xcb_window_t window, const DesktopWindow& desktop);
  bool belongsBelow(const DesktopWindow& desktop) const;
  void keepOrder();
  bool mayMove();
  void putAbove(xcb_window_t wallpaper);
  void putBelow(xcb_window_t wallpaper);
  void haveSorted(std::vector<xcb_window_t> order);
  void shape(xcb_window_t wallpaper, bool& isCut);
  std::optional<std::string> trouble() const;
  void tellTrouble();

  const X11SharedDesktop& owner_;
  const XConnection connection_;
  const DesktopWindows windows_{connection_};
  const xcb_atom_t restack_;
  const std::uint8_t firstDamageEvent_;
  ScreenImages images_{connection_};
  BriefWindow sorter_{connection_};
  /// And whether they have been cut.
  std::map<xcb_window_t, bool> wallpapers_;
  std::map<xcb_window_t, Desktop> desktops_;
  bool isListStale_ = true;
  bool isOrderStale_ = false;
  /// Whether a window for the desktop that belongs below wallpapers lies above one.
  bool isHidden_ = false;
  int moves_ = 0;
  /// How often it has been tried again since something was told last.
  int tries_ = 0;
  /// Wallpapers and windows for the desktop as they lay when the manager was last made to sort them.
  std::vector<xcb_window_t> sorted_;
  std::set<std::string> told_;
  guint source_ = 0;
  GLibMainLoop loop_;
  std::optional<Registration> looking_;
  Registration peace_;
  std::optional<Registration> telling_;
};

X11SharedDesktop::Watch::Watch(const X11SharedDesktop& owner, const XConnection& server)
    : owner_(owner),
      connection_(server.another()),
      restack_(internAtoms(connection_, restackName).front()),
      firstDamageEvent_(xcb_get_extension_data(connection_.get(), &xcb_damage_id)->first_event) {
  xcb_connection_t* const x = connection_.get();
  xcb_discard_reply(x, xcb_damage_query_version(x, XCB_DAMAGE_MAJOR_VERSION, XCB_DAMAGE_MINOR_VERSION).sequence);
  xcb_discard_reply(x, xcb_composite_query_version(x, 0, 4).sequence);
  constexpr std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(x, connection_.root(), XCB_CW_EVENT_MASK, &mask);
  xcb_flush(x);
  source_ = g_unix_fd_add(xcb_get_file_descriptor(x), G_IO_IN, readable, this);
}

X11SharedDesktop::Watch::~Watch() {
  if (source_ != 0) g_source_remove(source_);
}

void X11SharedDesktop::Watch::add(xcb_window_t wallpaper) {
  wallpapers_.emplace(wallpaper, false);
  isListStale_ = true;
  lookSoon();
}

gboolean X11SharedDesktop::Watch::readable(int /*descriptor*/, GIOCondition /*condition*/, gpointer self) {
  auto* const watch = static_cast<Watch*>(self);
  if (watch->drain()) return G_SOURCE_CONTINUE;
  watch->source_ = 0;
  return G_SOURCE_REMOVE;
}

/// Takes all events there are. Whether more can come.
bool X11SharedDesktop::Watch::drain() {
  while (const AllocatedPtr<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) take(*event);
  // At once: until then the user looks at a desktop without the wallpaper.
  if (std::exchange(isOrderStale_, false)) keepOrder();
  return connection_.isAlive();
}

void X11SharedDesktop::Watch::take(const xcb_generic_event_t& event) {
  const std::uint8_t type = event.response_type & ~sentEvent;
  if (type == firstDamageEvent_ + XCB_DAMAGE_NOTIFY) {
    const auto& damage = reinterpret_cast<const xcb_damage_notify_event_t&>(event);
    const auto found = desktops_.find(damage.drawable);
    if (found == desktops_.end() || !found->second.icons) return;
    found->second.icons->hasChanged(rectOf(damage.area));
  } else if (type == XCB_PROPERTY_NOTIFY) {
    if (!takeProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event).atom)) return;
  } else if (type == XCB_CONFIGURE_NOTIFY || type == XCB_UNMAP_NOTIFY || type == XCB_MAP_NOTIFY ||
             type == XCB_DESTROY_NOTIFY) {
    isListStale_ = true;
  } else {
    return;
  }
  lookSoon();
}

/// Whether this property of the root window matters here.
bool X11SharedDesktop::Watch::takeProperty(xcb_atom_t property) {
  if (property == windows_.pictureProperty()) {
    for (auto& [window, desktop] : desktops_) {
      if (desktop.icons) desktop.icons->allHasChanged();
    }
  } else if (property == windows_.listProperty()) {
    isListStale_ = true;
  } else if (property == windows_.stackingProperty()) {
    isOrderStale_ = true;
  } else {
    return false;
  }
  return true;
}

void X11SharedDesktop::Watch::lookSoon() {
  if (looking_ && tries_ == 0) return;
  tries_ = 0;
  looking_ = loop_.after(settlingTime, [this] { look(); });
}

/// When something could not be looked at.
void X11SharedDesktop::Watch::lookAgain() {
  const bool behind = std::any_of(desktops_.begin(), desktops_.end(),
                                  [](const auto& each) { return each.second.icons && each.second.icons->isBehind(); });
  if (behind && ++tries_ <= mostTries) looking_ = loop_.after(pause, [this] { look(); });
}

void X11SharedDesktop::Watch::look() {
  looking_.reset();
  bool changed = std::exchange(isListStale_, false);
  if (changed) {
    findDesktops();
    keepOrder();
  }
  const auto picture = windows_.picture();
  for (auto& [window, desktop] : desktops_) changed = (desktop.icons && desktop.icons->look(picture)) || changed;
  if (changed) {
    for (auto& [wallpaper, isCut] : wallpapers_) shape(wallpaper, isCut);
  }
  tellTrouble();
  xcb_flush(connection_.get());
  lookAgain();
  // What has come in while the server was asked would not make the descriptor readable again.
  drain();
}

void X11SharedDesktop::Watch::findDesktops() {
  const auto found = windows_.list();
  std::erase_if(desktops_, [&](const auto& each) {
    const auto still = found.find(each.first);
    return still == found.end() || still->second != each.second.window;
  });
  for (const auto& [window, desktop] : found) {
    if (desktops_.contains(window)) continue;
    desktops_.emplace(window, watched(window, desktop));
    moves_ = 0;
  }
}

X11SharedDesktop::Watch::Desktop X11SharedDesktop::Watch::watched(xcb_window_t window, const DesktopWindow& desktop) {
  constexpr std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_.get(), window, XCB_CW_EVENT_MASK, &mask);
  auto icons = desktop.isOpaque ? std::make_unique<IconCutout>(connection_, images_, window, desktop.place) : nullptr;
  return {desktop, std::move(icons)};
}

/// Whether the window for the desktop belongs below wallpapers.
bool X11SharedDesktop::Watch::belongsBelow(const DesktopWindow& desktop) const {
  return desktop.isOpaque || owner_.stacking().besideAlpha == Stacking::BesideAlpha::above;
}

/// Puts the wallpapers above opaque windows for the desktop and below those that show through.
void X11SharedDesktop::Watch::keepOrder() {
  isHidden_ = false;
  if (desktops_.empty()) return;
  const Stacking stacking = owner_.stacking();
  const bool showsThrough = stacking.besideAlpha == Stacking::BesideAlpha::below;
  // From the lowest on: which windows for the desktop lie above a wallpaper, and which below it?
  const auto order = windows_.stacking();
  for (const auto& [wallpaper, isCut] : wallpapers_) {
    const auto own = std::find(order.begin(), order.end(), wallpaper);
    if (own == order.end()) continue;
    const auto lower = [&](xcb_window_t window) {
      const auto found = desktops_.find(window);
      return found != desktops_.end() && belongsBelow(found->second.window);
    };
    const auto higher = [&](xcb_window_t window) { return desktops_.contains(window) && !lower(window); };
    if (std::any_of(own, order.end(), lower)) {
      isHidden_ = true;
      if (stacking.canRaise && mayMove()) putAbove(wallpaper);
    } else if (showsThrough && std::any_of(order.begin(), own, higher) && mayMove()) {
      putBelow(wallpaper);
    }
  }
  if (showsThrough) haveSorted(order);
  xcb_flush(connection_.get());
}

void X11SharedDesktop::Watch::haveSorted(std::vector<xcb_window_t> order) {
  std::erase_if(order,
                [&](xcb_window_t window) { return !wallpapers_.contains(window) && !desktops_.contains(window); });
  if (order == sorted_) return;
  sorted_ = std::move(order);
  sorter_.show();
}

bool X11SharedDesktop::Watch::mayMove() {
  // A fight that was given up begins again only with other windows.
  if (moves_ == mostMoves) return false;
  ++moves_;
  peace_ = moves_ < mostMoves ? loop_.after(mostMovesIn, [this] { moves_ = 0; }) : Registration();
  return true;
}

void X11SharedDesktop::Watch::putAbove(xcb_window_t wallpaper) {
  constexpr std::uint32_t above = XCB_STACK_MODE_ABOVE;
  xcb_configure_window(connection_.get(), wallpaper, XCB_CONFIG_WINDOW_STACK_MODE, &above);
}

void X11SharedDesktop::Watch::putBelow(xcb_window_t wallpaper) {
  // As a pager asks: what the window itself asks for may be refused (EWMH 1.5, _NET_RESTACK_WINDOW).
  constexpr std::uint32_t pager = 2;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = wallpaper;
  message.type = restack_;
  message.data.data32[0] = pager;
  message.data.data32[2] = XCB_STACK_MODE_BELOW;
  xcb_send_event(connection_.get(), 0, connection_.root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
}

void X11SharedDesktop::Watch::shape(xcb_window_t wallpaper, bool& isCut) {
  xcb_connection_t* const x = connection_.get();
  GeometryRequest geometryAsked(connection_, xcb_get_geometry(x, wallpaper));
  TranslateRequest originAsked(connection_, xcb_translate_coordinates(x, wallpaper, connection_.root(), 0, 0));
  const auto geometry = geometryAsked.read();
  const auto origin = originAsked.read();
  if (!geometry || !origin) return;
  const Rect place{static_cast<double>(origin->dst_x), static_cast<double>(origin->dst_y),
                   static_cast<double>(geometry->width), static_cast<double>(geometry->height)};
  const auto below = std::find_if(desktops_.begin(), desktops_.end(), [&](const auto& each) {
    const auto& icons = each.second.icons;
    return icons && icons->isKnown() && !intersection(place, icons->place()).isEmpty();
  });
  if (below != desktops_.end()) {
    below->second.icons->cutFrom(wallpaper, place);
    isCut = true;
  } else if (std::exchange(isCut, false)) {
    const xcb_rectangle_t whole{0, 0, geometry->width, geometry->height};
    xcb_shape_rectangles(x, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_YX_BANDED, wallpaper, 0, 0, 1,
                         &whole);
  }
}

std::optional<std::string> X11SharedDesktop::Watch::trouble() const {
  if (isHidden_) {
    return "a file manager's window for the desktop lies above the wallpaper, which rests meanwhile; the wallpaper is "
           "seen when that program shows no desktop";
  }
  if (std::any_of(desktops_.begin(), desktops_.end(), [this](const auto& each) {
        const auto& [window, icons] = each.second;
        return belongsBelow(window) && !(icons && icons->isKnown());
      })) {
    return "the desktop's icons are hidden behind the wallpaper, since nobody tells of the picture without them; they "
           "are seen again after Quit";
  }
  return std::nullopt;
}

void X11SharedDesktop::Watch::tellTrouble() {
  if (!trouble()) {
    telling_.reset();
  } else if (!telling_) {
    telling_ = loop_.after(patience, [this] {
      const auto words = trouble();
      if (words && owner_.tell_ && told_.insert(*words).second) owner_.tell_(*words);
    });
  }
}

X11SharedDesktop::X11SharedDesktop(const XConnection& server, const Monitors& monitors)
    : server_(server), monitors_(monitors) {}
X11SharedDesktop::~X11SharedDesktop() = default;

Registration X11SharedDesktop::onTrouble(std::function<void(const std::string&)> tell) {
  tell_ = std::move(tell);
  return Registration([this] { tell_ = nullptr; });
}

bool X11SharedDesktop::isPuttingRight() const { return watch_ && watch_->isPuttingRight(); }

Registration X11SharedDesktop::share(xcb_window_t wallpaper) {
  if (!watch_) watch_ = std::make_shared<Watch>(*this, server_);
  watch_->add(wallpaper);
  return Registration([watch = std::weak_ptr<Watch>(watch_), wallpaper] {
    if (const auto alive = watch.lock()) alive->remove(wallpaper);
  });
}

}  // namespace tavelle
