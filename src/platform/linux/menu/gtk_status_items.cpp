#include "platform/linux/menu/gtk_status_items.h"

#include <gdkmm/rectangle.h>
#include <glibmm/main.h>
#include <glibmm/ustring.h>
#include <gtkmm/icontheme.h>
#include <sigc++/connection.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>
#include <vector>

#include "platform/linux/menu/embedded_icon.h"
#include "platform/linux/menu/gtk_status_menu.h"
#include "platform/linux/menu/menu_items.h"
#include "platform/linux/menu/status_notifier_item.h"
#include "platform/linux/toolkit/monitors.h"

namespace tavelle {
namespace {

/// How long a panel that starts, or starts again, has to take the icon over the bus before the other way is tried.
constexpr std::chrono::duration<unsigned, std::milli> busPatience{2000};

/// Once installed, the icons are where the toolkit looks anyway.
void makeKnown(const std::filesystem::path& icons) {
  const auto theme = Gtk::IconTheme::get_default();
  const std::vector<Glib::ustring> known = theme->get_search_path();
  if (std::find(known.begin(), known.end(), Glib::ustring(icons.native())) == known.end())
    theme->append_search_path(icons.native());
}

/// The icon is shown through the session bus where a panel takes icons so, else in the X server's system tray; where
/// neither is there, in whichever of the two comes first. It comes back by itself after the panel has been restarted.
/// Never blocks on a panel.
class GtkStatusItem final : public StatusItem {
 public:
  /// Without `icons` the icon is a generic one.
  GtkStatusItem(const std::optional<std::filesystem::path>& icons, const Monitors& monitors,
                std::function<void(MenuItems&)> menuNeedsUpdate)
      : monitors_(monitors),
        menuNeedsUpdate_(std::move(menuNeedsUpdate)),
        onBus_(
            icons.value_or(""), [this](int x, int y) { clickedOnBus(x, y); },
            [this](bool shown) { shownOnBus(shown); }) {
    if (icons) makeKnown(*icons);
    shownOnBus(false);
  }

  GtkStatusItem(const GtkStatusItem&) = delete;
  GtkStatusItem& operator=(const GtkStatusItem&) = delete;
  ~GtkStatusItem() override {
    reopening_.disconnect();
    waiting_.disconnect();
  }

  /// A second click on the icon closes the menu, where the panel tells of it.
  void performClick() override {
    if (isMenuOpen()) return menu_->popdown();
    // Else the menu before would open again, at its own place.
    reopening_.disconnect();
    menu_.reset();
    items_.clear();
    menuNeedsUpdate_(items_);
    open(embedded_ ? embedded_->place() : lastPlace_, false);
  }

  bool isMenuOpen() const override { return menu_ && menu_->get_visible(); }

 private:
  void clickedOnBus(int x, int y) {
    // Panels that don't know send zeros, MATE's one and the height of the panel. On X11 the pointer is on the icon
    // then.
    const bool known = isWaylandDisplay(monitors_.display()) ? x != 0 || y != 0 : x != 0 && y != 0;
    if (known) lastPlace_ = Gdk::Rectangle(x, y, 1, 1);
    performClick();
  }

  void shownOnBus(bool shown) {
    lastPlace_.reset();
    waiting_.disconnect();
    if (shown) return embedded_.reset();
    if (isWaylandDisplay(monitors_.display())) return;
    waiting_ = Glib::signal_timeout().connect(
        [this] {
          embedded_ = std::make_unique<EmbeddedIcon>([this] { performClick(); });
          return false;
        },
        busPatience.count());
  }

  /// While there is no menu: the list serves one at a time.
  void open(const std::optional<Gdk::Rectangle>& place, bool onList) {
    menu_ = std::make_unique<GtkStatusMenu>(items_, monitors_, [this, place](bool wasOnList) {
      // Not while the toolkit is still at the event that has made the menu grow.
      reopening_ = Glib::signal_idle().connect([this, place, wasOnList] {
        menu_.reset();
        open(place, wasOnList);
        return false;
      });
    });
    menu_->popUp(place, onList);
  }

  const Monitors& monitors_;
  const std::function<void(MenuItems&)> menuNeedsUpdate_;
  MenuItems items_;
  std::unique_ptr<GtkStatusMenu> menu_;
  sigc::connection reopening_;
  /// Where the icon was clicked last on the bus, which tells no more of its place; a rectangle of one pixel.
  std::optional<Gdk::Rectangle> lastPlace_;
  /// Only while no panel shows the icon of the bus.
  std::unique_ptr<EmbeddedIcon> embedded_;
  sigc::connection waiting_;
  StatusNotifierItem onBus_;
};

}  // namespace

GtkStatusItems::GtkStatusItems(std::optional<std::filesystem::path> icons, const Monitors& monitors)
    : icons_(std::move(icons)), monitors_(monitors) {
  installMenuStyle();
}

std::unique_ptr<StatusItem> GtkStatusItems::make(std::function<void(MenuItems&)> menuNeedsUpdate) {
  return std::make_unique<GtkStatusItem>(icons_, monitors_, std::move(menuNeedsUpdate));
}

}  // namespace tavelle
