#include "platform/linux/desktop/gtk_status_items.h"

#include <utility>

#include "platform/linux/desktop/gtk_status_menu.h"
#include "platform/linux/desktop/menu_style.h"
#include "platform/linux/desktop/tray_icon.h"

namespace tavelle {
namespace {

class GtkStatusItem final : public StatusItem {
 public:
  GtkStatusItem(const std::optional<std::filesystem::path>& icons, std::function<void(MenuItems&)> menuNeedsUpdate)
      : menuNeedsUpdate_(std::move(menuNeedsUpdate)), icon_(icons, [this](const auto& place) { toggle(place); }) {}

  void performClick() override { icon_.performClick(); }
  bool isMenuOpen() const override { return menu_ && menu_->get_visible(); }

 private:
  /// A second click on the icon closes the menu, where the panel tells of it.
  void toggle(const std::optional<Gdk::Rectangle>& place) {
    if (isMenuOpen()) return menu_->popdown();
    menu_.reset();
    items_.clear();
    menuNeedsUpdate_(items_);
    menu_ = std::make_unique<GtkStatusMenu>(items_);
    menu_->popUp(place);
  }

  const std::function<void(MenuItems&)> menuNeedsUpdate_;
  MenuItems items_;
  std::unique_ptr<GtkStatusMenu> menu_;
  TrayIcon icon_;
};

}  // namespace

GtkStatusItems::GtkStatusItems(const std::optional<std::filesystem::path>& resources)
    : icons_(resources ? std::optional(*resources / "icons") : std::nullopt) {
  installMenuStyle();
}

std::unique_ptr<StatusItem> GtkStatusItems::make(std::function<void(MenuItems&)> menuNeedsUpdate) {
  return std::make_unique<GtkStatusItem>(icons_, std::move(menuNeedsUpdate));
}

}  // namespace tavelle
