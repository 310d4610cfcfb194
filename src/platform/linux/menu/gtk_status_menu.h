#pragma once

#include <gdkmm/rectangle.h>
#include <gtkmm/menu.h>
#include <sigc++/connection.h>

#include <functional>
#include <memory>
#include <optional>

#include "platform/status_item.h"

namespace tavelle {

class ListMenuItem;
class Monitors;

/// A menu of the program's, on the screen.
class GtkStatusMenu final : public Gtk::Menu {
 public:
  /// `menu` and `monitors` must outlive this. On Wayland an open menu can't be moved. When it grows too high for its
  /// place it closes instead and calls `outgrown`, for a new one to be opened; `onList` tells whether the list was the
  /// selected item.
  GtkStatusMenu(const MenuItems& menu, const Monitors& monitors, std::function<void(bool onList)> outgrown);
  GtkStatusMenu(const GtkStatusMenu&) = delete;
  GtkStatusMenu& operator=(const GtkStatusMenu&) = delete;
  ~GtkStatusMenu() override;

  /// Opens beside `place`, in the toolkit's coordinates of the root window; without one at the pointer, on Wayland in
  /// the corner where panels have their icons. Where a panel still holds the pointer, a little later. On Wayland
  /// the list is the selected item then, if `onList`.
  void popUp(const std::optional<Gdk::Rectangle>& place, bool onList);
  /// Gives the open menu the size that its items now ask for.
  void fit();

 protected:
  bool on_key_press_event(GdkEventKey* event) override;
  bool on_button_release_event(GdkEventButton* event) override;

 private:
  class Anchor;

  void tryToPopUp();
  void popUpOnLayer(const std::optional<Gdk::Rectangle>& place, bool onList);
  void openAtAnchor();
  void leaveAnchor();
  bool fitsBelow() const;
  bool isOnList() const;

  const Monitors& monitors_;
  const std::function<void(bool)> outgrown_;
  Gdk::Rectangle place_;
  /// Where windows can't be placed otherwise.
  std::unique_ptr<Anchor> anchor_;
  /// From the anchor to the lower edge of its screen.
  int roomBelow_ = 0;
  bool opensBelow_ = false;
  int attempts_ = 0;
  sigc::connection nextAttempt_;
  sigc::connection leaving_;
  /// Owned by the menu, as all its items.
  ListMenuItem* list_ = nullptr;
};

}  // namespace tavelle
