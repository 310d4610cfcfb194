#include <plasma-virtual-desktop-client-protocol.h>
#include <plasma-window-management-client-protocol.h>

#include <algorithm>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "base/filled.h"
#include "platform/linux/told_window.h"
#include "platform/linux/toolkit/change_calls.h"
#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/wayland/told_windows.h"
#include "platform/linux/wayland/wayland_globals.h"

namespace tavelle {
namespace {

/// The version since which windows tell of their virtual desktops; where they are they have told before.
constexpr std::uint32_t leastVersion = 8;

bool has(std::uint32_t flags, std::uint32_t flag) { return (flags & flag) != 0; }

/// Whether it is one of the shell's own windows, such as its desktop, which covers everything. Plasma 5.27 has these in
/// the switcher, other than later ones.
bool isFurniture(std::uint32_t flags) {
  constexpr std::uint32_t handled = ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_CLOSEABLE |
                                    ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_MOVABLE |
                                    ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_RESIZABLE;
  return has(flags, ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_SKIPTASKBAR) && !has(flags, handled);
}

class PlasmaWindows final : public WindowList {
 public:
  /// Takes over both; `desktops` may be null, and then windows of all virtual desktops count.
  PlasmaWindows(org_kde_plasma_window_management* management, org_kde_plasma_virtual_desktop_management* desktops,
                const Monitors& monitors, ChangeCalls& changes);
  PlasmaWindows(const PlasmaWindows&) = delete;
  PlasmaWindows& operator=(const PlasmaWindows&) = delete;
  ~PlasmaWindows() override = default;

  std::optional<std::vector<WindowDescription>> onScreen() const override;

 private:
  class Window;
  class Desktop;
  using Management = org_kde_plasma_window_management;
  using DesktopManagement = org_kde_plasma_virtual_desktop_management;

  static void showingDesktop(void* self, Management* management, std::uint32_t state);
  static void toldByNumber(void* self, Management* management, std::uint32_t number);
  static void toldByName(void* self, Management* management, std::uint32_t number, const char* uuid);
  static void desktopCreated(void* self, DesktopManagement* management, const char* id, std::uint32_t position);
  static void desktopRemoved(void* self, DesktopManagement* management, const char* id);

  void add(org_kde_plasma_window* handle);
  bool isOnShownDesktop(const Window& window) const;

  const Monitors& monitors_;
  ChangeCalls& changes_;
  const WlPtr<Management> management_;
  const WlPtr<DesktopManagement> desktopManagement_;
  bool showsDesktop_ = false;
  std::vector<std::unique_ptr<Window>> windows_;
  std::map<std::string, std::unique_ptr<Desktop>, std::less<>> desktops_;
};

class PlasmaWindows::Window {
 public:
  Window(org_kde_plasma_window* handle, PlasmaWindows& list) : handle_(handle), list_(list) {
    static constexpr auto listener = filled<org_kde_plasma_window_listener>([](auto& all) {
      all.title_changed = ignoreEvent;
      all.app_id_changed = ignoreEvent;
      all.state_changed = stateChanged;
      all.virtual_desktop_changed = ignoreEvent;
      all.themed_icon_name_changed = ignoreEvent;
      all.unmapped = unmapped;
      all.initial_state = ignoreEvent;
      all.parent_window = ignoreEvent;
      all.geometry = geometry;
      all.icon_changed = ignoreEvent;
      all.pid_changed = pidChanged;
      all.virtual_desktop_entered = entered;
      all.virtual_desktop_left = left;
      all.application_menu = ignoreEvent;
      all.activity_entered = ignoreEvent;
      all.activity_left = ignoreEvent;
      all.resource_name_changed = ignoreEvent;
    });
    org_kde_plasma_window_add_listener(handle, &listener, this);
  }

  const ToldWindow& told() const { return told_; }
  /// The virtual desktops that it is on; empty when it is on all.
  const std::set<std::string>& desktops() const { return desktops_; }

 private:
  using Handle = org_kde_plasma_window;

  static Window& of(void* data) { return *static_cast<Window*>(data); }
  static void stateChanged(void* self, Handle* /*handle*/, std::uint32_t flags) {
    of(self).change([&](ToldWindow& told) {
      told.minimized = has(flags, ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_MINIMIZED);
      told.maximized = has(flags, ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_MAXIMIZED);
      told.fullscreen = has(flags, ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_FULLSCREEN);
      told.furniture = isFurniture(flags);
    });
  }
  static void geometry(void* self, Handle* /*handle*/, std::int32_t x, std::int32_t y, std::uint32_t width,
                       std::uint32_t height) {
    of(self).change([&](ToldWindow& told) {
      told.frame =
          Rect{static_cast<double>(x), static_cast<double>(y), static_cast<double>(width), static_cast<double>(height)};
    });
  }
  static void pidChanged(void* self, Handle* /*handle*/, std::uint32_t pid) {
    if (pid == 0 || pid > std::numeric_limits<std::int32_t>::max()) return;
    of(self).change([&](ToldWindow& told) { told.owner = static_cast<std::int32_t>(pid); });
  }
  static void entered(void* self, Handle* /*handle*/, const char* desktop) {
    of(self).desktops_.insert(desktop);
    of(self).list_.changes_.soon();
  }
  static void left(void* self, Handle* /*handle*/, const char* desktop) {
    of(self).desktops_.erase(desktop);
    of(self).list_.changes_.soon();
  }
  static void unmapped(void* self, Handle* /*handle*/) {
    auto& list = of(self).list_;
    std::erase_if(list.windows_, [=](const auto& each) { return each.get() == self; });
    list.changes_.soon();
  }

  template <typename Change>
  void change(Change apply) {
    const ToldWindow before = told_;
    apply(told_);
    // Most states have nothing to do with what can be seen.
    if (told_ != before) list_.changes_.soon();
  }

  const WlPtr<Handle> handle_;
  PlasmaWindows& list_;
  ToldWindow told_;
  std::set<std::string> desktops_;
};

class PlasmaWindows::Desktop {
 public:
  Desktop(org_kde_plasma_virtual_desktop* handle, ChangeCalls& calls) : handle_(handle), calls_(calls) {
    static constexpr auto listener = filled<org_kde_plasma_virtual_desktop_listener>([](auto& all) {
      all.desktop_id = ignoreEvent;
      all.name = ignoreEvent;
      all.activated = activated;
      all.deactivated = deactivated;
      all.done = ignoreEvent;
      all.removed = ignoreEvent;
    });
    org_kde_plasma_virtual_desktop_add_listener(handle, &listener, this);
  }

  bool isShown() const { return isShown_; }

 private:
  using Handle = org_kde_plasma_virtual_desktop;

  static void activated(void* self, Handle* /*handle*/) { static_cast<Desktop*>(self)->show(true); }
  static void deactivated(void* self, Handle* /*handle*/) { static_cast<Desktop*>(self)->show(false); }
  void show(bool shown) {
    isShown_ = shown;
    calls_.soon();
  }

  const WlPtr<Handle> handle_;
  ChangeCalls& calls_;
  bool isShown_ = false;
};

PlasmaWindows::PlasmaWindows(Management* management, DesktopManagement* desktops, const Monitors& monitors,
                             ChangeCalls& changes)
    : monitors_(monitors), changes_(changes), management_(management), desktopManagement_(desktops) {
  static constexpr auto listener = filled<org_kde_plasma_window_management_listener>([](auto& all) {
    all.show_desktop_changed = showingDesktop;
    all.window = toldByNumber;
    all.stacking_order_changed = ignoreEvent;
    all.stacking_order_uuid_changed = ignoreEvent;
    all.window_with_uuid = toldByName;
  });
  org_kde_plasma_window_management_add_listener(management, &listener, this);
  static constexpr auto desktopListener = filled<org_kde_plasma_virtual_desktop_management_listener>([](auto& all) {
    all.desktop_created = desktopCreated;
    all.desktop_removed = desktopRemoved;
    all.done = ignoreEvent;
    all.rows = ignoreEvent;
  });
  if (desktops) org_kde_plasma_virtual_desktop_management_add_listener(desktops, &desktopListener, this);
}

std::optional<std::vector<WindowDescription>> PlasmaWindows::onScreen() const {
  const auto places = monitors_.placesOf(monitors_.all());
  std::vector<WindowDescription> windows;
  // The latest first, for want of a better order.
  std::for_each(windows_.rbegin(), windows_.rend(), [&](const auto& each) {
    if (!isOnShownDesktop(*each) || (showsDesktop_ && !each->told().furniture)) return;
    const auto hidden = hiddenBy(each->told(), places);
    windows.insert(windows.end(), hidden.begin(), hidden.end());
  });
  monitors_.moveToGlobal(windows);
  return windows;
}

bool PlasmaWindows::isOnShownDesktop(const Window& window) const {
  const auto isShown = [](const auto& each) { return each.second->isShown(); };
  if (window.desktops().empty() || std::none_of(desktops_.begin(), desktops_.end(), isShown)) return true;
  return std::any_of(desktops_.begin(), desktops_.end(),
                     [&](const auto& each) { return isShown(each) && window.desktops().contains(each.first); });
}

void PlasmaWindows::showingDesktop(void* self, Management* /*management*/, std::uint32_t state) {
  auto& list = *static_cast<PlasmaWindows*>(self);
  list.showsDesktop_ = state == ORG_KDE_PLASMA_WINDOW_MANAGEMENT_SHOW_DESKTOP_ENABLED;
  list.changes_.soon();
}

void PlasmaWindows::toldByNumber(void* self, Management* management, std::uint32_t number) {
  // Later versions tell each window by its name.
  if (org_kde_plasma_window_management_get_version(management) >=
      ORG_KDE_PLASMA_WINDOW_MANAGEMENT_WINDOW_WITH_UUID_SINCE_VERSION) {
    return;
  }
  static_cast<PlasmaWindows*>(self)->add(org_kde_plasma_window_management_get_window(management, number));
}

void PlasmaWindows::toldByName(void* self, Management* management, std::uint32_t /*number*/, const char* uuid) {
  static_cast<PlasmaWindows*>(self)->add(org_kde_plasma_window_management_get_window_by_uuid(management, uuid));
}

void PlasmaWindows::add(org_kde_plasma_window* handle) { windows_.push_back(std::make_unique<Window>(handle, *this)); }

void PlasmaWindows::desktopCreated(void* self, DesktopManagement* management, const char* id,
                                   std::uint32_t /*position*/) {
  auto& list = *static_cast<PlasmaWindows*>(self);
  auto* const handle = org_kde_plasma_virtual_desktop_management_get_virtual_desktop(management, id);
  list.desktops_.insert_or_assign(id, std::make_unique<Desktop>(handle, list.changes_));
}

void PlasmaWindows::desktopRemoved(void* self, DesktopManagement* /*management*/, const char* id) {
  auto& list = *static_cast<PlasmaWindows*>(self);
  list.desktops_.erase(id);
  list.changes_.soon();
}

}  // namespace

std::unique_ptr<WindowList> plasmaWindows(const WaylandGlobals& globals, const Monitors& monitors,
                                          ChangeCalls& changes) {
  auto* const management =
      globals.bind<org_kde_plasma_window_management>(org_kde_plasma_window_management_interface, leastVersion);
  if (!management) return nullptr;
  auto* const desktops =
      globals.bind<org_kde_plasma_virtual_desktop_management>(org_kde_plasma_virtual_desktop_management_interface, 1);
  auto windows = std::make_unique<PlasmaWindows>(management, desktops, monitors, changes);
  // The first answer names windows and desktops, the second tells of them.
  if (globals.settle()) globals.settle();
  return windows;
}

}  // namespace tavelle
