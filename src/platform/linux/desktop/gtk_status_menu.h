#pragma once

#include <gdkmm/rectangle.h>
#include <gtkmm/menu.h>
#include <sigc++/connection.h>

#include <optional>

#include "platform/status_item.h"

namespace tavelle {

class ListMenuItem;

/// A menu of the program's, on the screen.
class GtkStatusMenu final : public Gtk::Menu {
 public:
  /// `menu` must outlive this.
  explicit GtkStatusMenu(const MenuItems& menu);
  GtkStatusMenu(const GtkStatusMenu&) = delete;
  GtkStatusMenu& operator=(const GtkStatusMenu&) = delete;
  ~GtkStatusMenu() override;

  /// Opens beside `place`, in the toolkit's coordinates of the root window; without one at the pointer. Where a panel
  /// still holds the pointer, a little later.
  void popUp(const std::optional<Gdk::Rectangle>& place);

 protected:
  bool on_key_press_event(GdkEventKey* event) override;

 private:
  void tryToPopUp();
  void fit();

  Gdk::Rectangle place_;
  int attempts_ = 0;
  sigc::connection nextAttempt_;
  /// Owned by the menu, as all its items.
  ListMenuItem* list_ = nullptr;
};

}  // namespace tavelle
