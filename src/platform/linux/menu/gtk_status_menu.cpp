#include "platform/linux/menu/gtk_status_menu.h"

// gtkmm has to come before the macros of X11.
// clang-format off
#include <glibmm/main.h>
#include <gtkmm/window.h>
#include <gdk/gdkkeysyms.h>
#include <gdk/gdkx.h>
#include <gtk-layer-shell.h>
// clang-format on

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

#include "platform/linux/handles.h"
#include "platform/linux/menu/list_menu_item.h"
#include "platform/linux/menu/menu_items.h"
#include "platform/linux/toolkit/monitors.h"

namespace tavelle {
namespace {

/// A panel lets go of the pointer when the button that was pressed on it is released, or some frames later.
constexpr std::chrono::duration<unsigned, std::milli> retryInterval{40};
constexpr int maxAttempts = 50;

/// How long the keyboard may take to come. There may be none.
constexpr std::chrono::duration<unsigned, std::milli> keyboardPatience{200};

using EventPtr = std::unique_ptr<GdkEvent, FreeWith<gdk_event_free>>;

/// The time of the event that is being handled, else the server's time now. `asking` is a window of this program's.
guint32 timeOfClick(GdkWindow* asking) {
  const guint32 ofEvent = gtk_get_current_event_time();
  if (ofEvent != GDK_CURRENT_TIME) return ofEvent;
  gdk_window_set_events(asking, static_cast<GdkEventMask>(gdk_window_get_events(asking) | GDK_PROPERTY_CHANGE_MASK));
  return gdk_x11_get_server_time(asking);
}

/// What opens a menu: a click in the root window `root`. With the true time the toolkit can tell the end of that click
/// from the choice of an item; a button let go of before that time would close the menu.
EventPtr clickInRoot(GdkWindow* root, GdkWindow* asking) {
  EventPtr event(gdk_event_new(GDK_BUTTON_PRESS));
  event->button.window = retain(root).release();
  event->button.button = GDK_BUTTON_PRIMARY;
  event->button.time = timeOfClick(asking);
  gdk_event_set_device(event.get(), gdk_seat_get_pointer(gdk_display_get_default_seat(gdk_window_get_display(root))));
  return event;
}

Gdk::Rectangle pointerPlace(GdkDisplay* display) {
  int x = 0;
  int y = 0;
  gdk_device_get_position(gdk_seat_get_pointer(gdk_display_get_default_seat(display)), nullptr, &x, &y);
  return {x, y, 1, 1};
}

/// On Wayland a panel may know no more than where on its icon the click was.
bool isCountedFromIcon(const Gdk::Rectangle& place) {
  constexpr int largestIcon = 48;
  return place.get_x() < largestIcon && place.get_y() < largestIcon;
}

}  // namespace

/// A point of a Wayland compositor's screen for a menu to open beside: a surface of one pixel on the topmost layer,
/// which has the keyboard while it is there. It takes no room from anything. Main thread only.
class GtkStatusMenu::Anchor {
 public:
  /// On `monitor`, `left` and `top` logical pixels from its corner. `ready` is called once on the main loop, when the
  /// surface is on screen and has the keyboard: a menu that opens earlier would never get it.
  Anchor(GdkMonitor* monitor, int left, int top, std::function<void()> ready);
  Anchor(const Anchor&) = delete;
  Anchor& operator=(const Anchor&) = delete;
  ~Anchor();

  /// For a menu to be its popup.
  GdkWindow* surface() { return window_.get_window()->gobj(); }

 private:
  void tell();

  std::function<void()> ready_;
  Gtk::Window window_;
  sigc::connection patience_;
};

GtkStatusMenu::Anchor::Anchor(GdkMonitor* monitor, int left, int top, std::function<void()> ready)
    : ready_(std::move(ready)) {
  gtk_layer_init_for_window(window_.gobj());
  gtk_layer_set_namespace(window_.gobj(), "tavelle-menu");
  gtk_layer_set_layer(window_.gobj(), GTK_LAYER_SHELL_LAYER_OVERLAY);
  gtk_layer_set_monitor(window_.gobj(), monitor);
  gtk_layer_set_anchor(window_.gobj(), GTK_LAYER_SHELL_EDGE_LEFT, TRUE);
  gtk_layer_set_anchor(window_.gobj(), GTK_LAYER_SHELL_EDGE_TOP, TRUE);
  gtk_layer_set_margin(window_.gobj(), GTK_LAYER_SHELL_EDGE_LEFT, left);
  gtk_layer_set_margin(window_.gobj(), GTK_LAYER_SHELL_EDGE_TOP, top);
  // Counted from the edges of the screen, not from those of its panels.
  gtk_layer_set_exclusive_zone(window_.gobj(), -1);
  gtk_layer_set_keyboard_mode(window_.gobj(), GTK_LAYER_SHELL_KEYBOARD_MODE_EXCLUSIVE);
  window_.set_app_paintable(true);
  window_.set_size_request(1, 1);
  window_.signal_focus_in_event().connect([this](GdkEventFocus*) {
    tell();
    return false;
  });
  window_.show();
  patience_ = Glib::signal_timeout().connect(
      [this] {
        tell();
        return false;
      },
      keyboardPatience.count());
}

GtkStatusMenu::Anchor::~Anchor() { patience_.disconnect(); }

void GtkStatusMenu::Anchor::tell() {
  patience_.disconnect();
  if (const auto ready = std::exchange(ready_, nullptr)) ready();
}

GtkStatusMenu::GtkStatusMenu(const MenuItems& menu, const Monitors& monitors, std::function<void(bool)> outgrown)
    : monitors_(monitors), outgrown_(std::move(outgrown)) {
  useMenuStyle(*this);
  atk_object_set_name(gtk_widget_get_accessible(GTK_WIDGET(gobj())), "Tavelle");
  for (const MenuItem& item : menu) {
    if (item.kind == MenuItem::Kind::list) {
      list_ = Gtk::make_managed<ListMenuItem>(item.list, *this);
      append(*list_);
    } else {
      append(*Gtk::manage(makeMenuItem(item).release()));
    }
  }
  show_all_children();
  signal_unmap().connect([this] { leaveAnchor(); });
}

GtkStatusMenu::~GtkStatusMenu() {
  nextAttempt_.disconnect();
  leaving_.disconnect();
}

void GtkStatusMenu::popUp(const std::optional<Gdk::Rectangle>& place, bool onList) {
  if (isWaylandDisplay(monitors_.display())) return popUpOnLayer(place, onList);
  place_ = place ? *place : pointerPlace(monitors_.display());
  attempts_ = 0;
  tryToPopUp();
}

void GtkStatusMenu::popUpOnLayer(const std::optional<Gdk::Rectangle>& place, bool onList) {
  const bool known = place && !isCountedFromIcon(*place);
  GdkMonitor* const monitor =
      monitors_.at(known ? Point{static_cast<double>(place->get_x()), static_cast<double>(place->get_y())} : Point{});
  if (!monitor) return;
  const Rect screen = monitors_.placeOf(monitor);
  // Only the compositor knows where the pointer is, so it is the corner where most panels have their icons.
  const int left = known ? place->get_x() - static_cast<int>(screen.x) : static_cast<int>(screen.width) - 1;
  const int top = known ? place->get_y() - static_cast<int>(screen.y) : 0;
  roomBelow_ = static_cast<int>(screen.height) - top - 1;
  anchor_ = std::make_unique<Anchor>(monitor, left, top, [this, onList] {
    openAtAnchor();
    if (onList) select_item(*list_);
  });
}

void GtkStatusMenu::openAtAnchor() {
  const GdkRectangle point{0, 0, 1, 1};
  gtk_menu_popup_at_rect(gobj(), anchor_->surface(), &point, GDK_GRAVITY_SOUTH_WEST, GDK_GRAVITY_NORTH_WEST, nullptr);
  opensBelow_ = fitsBelow();
  // A menu that could not open never closes.
  if (!get_visible()) leaveAnchor();
}

/// The keyboard goes back to where it was. Not before the popup has gone, which is the surface's.
void GtkStatusMenu::leaveAnchor() {
  leaving_ = Glib::signal_idle().connect([this] {
    anchor_.reset();
    return false;
  });
}

void GtkStatusMenu::tryToPopUp() {
  Gtk::Widget& window = *get_toplevel();
  gtk_widget_realize(window.gobj());
  GdkWindow* const root = gdk_screen_get_root_window(gdk_display_get_default_screen(monitors_.display()));
  const EventPtr event = clickInRoot(root, window.get_window()->gobj());
  gtk_menu_popup_at_rect(gobj(), root, place_.gobj(), GDK_GRAVITY_SOUTH_WEST, GDK_GRAVITY_NORTH_WEST, event.get());
  if (get_visible() || ++attempts_ == maxAttempts) return;
  nextAttempt_ = Glib::signal_timeout().connect(
      [this] {
        tryToPopUp();
        return false;
      },
      retryInterval.count());
}

void GtkStatusMenu::fit() {
  auto* const window = dynamic_cast<Gtk::Window*>(get_toplevel());
  if (!window) return;
  // The menu's window keeps the size that it was opened with until it is told, and its place until it is asked.
  Gtk::Requisition minimum;
  Gtk::Requisition natural;
  // With the shadow that the toolkit draws round it on Wayland.
  window->get_preferred_size(minimum, natural);
  if (anchor_ && !(opensBelow_ && fitsBelow())) {
    const bool onList = isOnList();
    popdown();
    return outgrown_(onList);
  }
  window->get_window()->resize(natural.width, natural.height);
  window->resize(natural.width, natural.height);
  reposition();
}

bool GtkStatusMenu::fitsBelow() const {
  Gtk::Requisition minimum;
  Gtk::Requisition natural;
  get_preferred_size(minimum, natural);
  return natural.height <= roomBelow_;
}

bool GtkStatusMenu::isOnList() const {
  return list_ && gtk_menu_shell_get_selected_item(GTK_MENU_SHELL(gobj())) == GTK_WIDGET(list_->gobj());
}

bool GtkStatusMenu::on_button_release_event(GdkEventButton* event) {
  // What the list's own item does not take.
  if (list_) list_->letGo();
  return Gtk::Menu::on_button_release_event(event);
}

bool GtkStatusMenu::on_key_press_event(GdkEventKey* event) {
  const bool before = isOnList();
  if (before && list_->pressKey(event->keyval)) return true;
  const bool handled = Gtk::Menu::on_key_press_event(event);
  if (!before && isOnList()) {
    const bool fromBelow = event->keyval == GDK_KEY_Up || event->keyval == GDK_KEY_KP_Up;
    list_->enterByKeyboard(fromBelow ? ListMenuItem::End::last : ListMenuItem::End::first);
  }
  return handled;
}

}  // namespace tavelle
