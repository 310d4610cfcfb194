#include "platform/linux/menu/tray_icon.h"

#include <glibmm/main.h>
#include <glibmm/ustring.h>
#include <gtkmm/icontheme.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/linux/toolkit/monitors.h"

namespace tavelle {
namespace {

/// How long a panel that starts, or starts again, has to take the icon over the bus before the other way is tried.
constexpr unsigned patience = 2000;  // ms

/// Once installed, the icons are where the toolkit looks anyway.
void makeKnown(const std::filesystem::path& icons) {
  const auto theme = Gtk::IconTheme::get_default();
  const std::vector<Glib::ustring> known = theme->get_search_path();
  if (std::find(known.begin(), known.end(), Glib::ustring(icons.native())) == known.end())
    theme->append_search_path(icons.native());
}

}  // namespace

TrayIcon::TrayIcon(const std::optional<std::filesystem::path>& icons, const Monitors& monitors, Clicked clicked)
    : monitors_(monitors),
      clicked_(std::move(clicked)),
      item_(
          icons.value_or(""), [this](int x, int y) { clickedOnBus(x, y); }, [this](bool shown) { shownOnBus(shown); }) {
  if (icons) makeKnown(*icons);
  shownOnBus(false);
}

TrayIcon::~TrayIcon() { patience_.disconnect(); }

void TrayIcon::shownOnBus(bool shown) {
  lastPlace_.reset();
  patience_.disconnect();
  if (shown) return embedded_.reset();
  if (isWaylandDisplay(monitors_.display())) return;
  patience_ = Glib::signal_timeout().connect(
      [this] {
        embedded_ = std::make_unique<EmbeddedIcon>([this] { performClick(); });
        return false;
      },
      patience);
}

void TrayIcon::clickedOnBus(int x, int y) {
  // What panels send that don't know: no icon is only one pixel away from the corner.
  if (x != 0 || y != 0) lastPlace_ = Gdk::Rectangle(x, y, 1, 1);
  performClick();
}

void TrayIcon::performClick() {
  // A copy, since it may destroy this.
  const auto clicked = clicked_;
  const auto place = embedded_ ? embedded_->place() : lastPlace_;
  clicked(place);
}

}  // namespace tavelle
