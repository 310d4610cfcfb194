#include "platform/linux/menu/gtk_status_items.h"

#include <glibmm/main.h>

#include <utility>

#include "platform/linux/menu/gtk_status_menu.h"
#include "platform/linux/menu/menu_items.h"
#include "platform/linux/menu/tray_icon.h"

namespace tavelle {
namespace {

class GtkStatusItem final : public StatusItem {
 public:
  GtkStatusItem(const std::optional<std::filesystem::path>& icons, const Monitors& monitors,
                std::function<void(MenuItems&)> menuNeedsUpdate)
      : monitors_(monitors),
        menuNeedsUpdate_(std::move(menuNeedsUpdate)),
        icon_(icons, monitors, [this](const auto& place) { toggle(place); }) {}

  GtkStatusItem(const GtkStatusItem&) = delete;
  GtkStatusItem& operator=(const GtkStatusItem&) = delete;
  ~GtkStatusItem() override { reopening_.disconnect(); }

  void performClick() override { icon_.performClick(); }
  bool isMenuOpen() const override { return menu_ && menu_->get_visible(); }

 private:
  /// A second click on the icon closes the menu, where the panel tells of it.
  void toggle(const std::optional<Gdk::Rectangle>& place) {
    if (isMenuOpen()) return menu_->popdown();
    // It would open the menu before, where that was.
    reopening_.disconnect();
    menu_.reset();
    items_.clear();
    menuNeedsUpdate_(items_);
    open(place, false);
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
  TrayIcon icon_;
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
