#pragma once

#include <gtkmm/menuitem.h>
#include <sigc++/connection.h>

#include <memory>
#include <optional>

#include "platform/view.h"

namespace tavelle {

class GtkStatusMenu;

/// Shows a list of rows as one item of a GTK menu, in the theme's font and colours, and brings it what pointer and
/// keyboard do. Assistive technology finds each row of the list as a menu item of its own.
class ListMenuItem final : public Gtk::MenuItem, MenuHost {
 public:
  /// For `menu`.
  ListMenuItem(std::shared_ptr<MenuList> list, GtkStatusMenu& menu);
  ListMenuItem(const ListMenuItem&) = delete;
  ListMenuItem& operator=(const ListMenuItem&) = delete;
  ~ListMenuItem() override;

  enum class End { first, last };
  /// Puts the keyboard on a row.
  void enterByKeyboard(End end);
  /// What a key does while the keyboard is on one of the rows. Whether that is anything; the menu's own keys are not.
  bool pressKey(guint key);
  /// The button that was pressed on a row has been released elsewhere.
  void letGo();

 protected:
  void get_preferred_width_vfunc(int& minimum, int& natural) const override;
  void get_preferred_height_vfunc(int& minimum, int& natural) const override;
  void get_preferred_height_for_width_vfunc(int width, int& minimum, int& natural) const override;
  void on_size_allocate(Gtk::Allocation& allocation) override;
  bool on_draw(const Cairo::RefPtr<Cairo::Context>& context) override;
  bool on_enter_notify_event(GdkEventCrossing* event) override;
  bool on_leave_notify_event(GdkEventCrossing* event) override;
  bool on_motion_notify_event(GdkEventMotion* event) override;
  bool on_button_press_event(GdkEventButton* event) override;
  bool on_button_release_event(GdkEventButton* event) override;
  bool on_scroll_event(GdkEventScroll* event) override;
  void on_style_updated() override;
  void on_unmap() override;

 private:
  void needsDisplay(const Rect& area) override;
  void scrolled() override;
  void sizeChanged() override;
  void closeMenu() override;

  /// A point of the item, in pixels, in the list's coordinates, whose points grow with the desktop's text.
  Point placeIn(double x, double y) const;
  void pointAt(const Point& point);
  void hover(View* view);
  void walkTo(std::size_t row);
  std::optional<std::size_t> currentRow() const;
  void scrollBy(double distance);
  void showScroller();
  void fadeScroller();
  const MenuTheme& theme();

  const std::shared_ptr<MenuList> list_;
  GtkStatusMenu& menu_;
  std::optional<MenuTheme> theme_;
  /// What the pointer, or the keyboard, is on.
  std::weak_ptr<View> hovered_;
  std::weak_ptr<View> pressed_;
  /// Where the pointer was last, in the list's coordinates; none while the keyboard leads.
  std::optional<Point> pointer_;
  sigc::connection fading_;
};

}  // namespace tavelle
