#include "platform/linux/menu/list_menu_item.h"

#include <gdk/gdkkeysyms.h>
#include <glibmm/main.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include "platform/linux/drawing/cairo_canvas.h"
#include "platform/linux/menu/gtk_status_menu.h"
#include "platform/linux/menu/list_accessible.h"
#include "platform/linux/menu/menu_items.h"

namespace tavelle {
namespace {

/// How long the scroll bar stays after the last movement, and how it goes then.
constexpr std::chrono::duration<unsigned, std::milli> idleTime{700};
constexpr std::chrono::duration<unsigned, std::milli> fadeInterval{30};
constexpr double fadeStep = 0.125;

/// How far one notch of a mouse wheel goes: what GTK's own scroll bars take for a page of that size.
double wheelStep(double page) { return std::pow(page, 2.0 / 3.0); }

}  // namespace

ListMenuItem::ListMenuItem(std::shared_ptr<MenuList> list, GtkStatusMenu& menu)
    : Glib::ObjectBase("TavelleListMenuItem"), list_(std::move(list)), menu_(menu) {
  add_events(Gdk::SCROLL_MASK | Gdk::SMOOTH_SCROLL_MASK | Gdk::POINTER_MOTION_MASK);
  describeToAssistiveTechnology(*this, list_);
  signal_deselect().connect([this] { hover(nullptr); });
  list_->setHost(this);
}

ListMenuItem::~ListMenuItem() {
  fading_.disconnect();
  list_->setHost(nullptr);
}

// --- Size and look

void ListMenuItem::get_preferred_width_vfunc(int& minimum, int& natural) const {
  minimum = natural = static_cast<int>(std::ceil(list_->preferredWidth() * textScale(*this)));
}

void ListMenuItem::get_preferred_height_vfunc(int& minimum, int& natural) const {
  minimum = natural = static_cast<int>(std::ceil(list_->frame().height * textScale(*this)));
}

void ListMenuItem::get_preferred_height_for_width_vfunc(int /*width*/, int& minimum, int& natural) const {
  get_preferred_height_vfunc(minimum, natural);
}

void ListMenuItem::on_size_allocate(Gtk::Allocation& allocation) {
  Gtk::MenuItem::on_size_allocate(allocation);
  list_->setFrame({0, 0, allocation.get_width() / textScale(*this), list_->frame().height});
  // Other rows may lie under a pointer that rests.
  if (pointer_) pointAt(*pointer_);
}

bool ListMenuItem::on_draw(const Cairo::RefPtr<Cairo::Context>& context) {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
  context->scale(textScale(*this), textScale(*this));
  context->get_clip_extents(left, top, right, bottom);
  CairoCanvas canvas(context->cobj(), get_pango_context()->gobj());
  list_->render(canvas, theme(), {left, top, right - left, bottom - top});
  return true;
}

const MenuTheme& ListMenuItem::theme() {
  if (!theme_) theme_ = menuTheme(*this);
  return *theme_;
}

void ListMenuItem::on_style_updated() {
  Gtk::MenuItem::on_style_updated();
  theme_.reset();
  queue_draw();
}

void ListMenuItem::needsDisplay(const Rect& area) {
  const double scale = textScale(*this);
  const auto left = static_cast<int>(std::floor(area.x * scale));
  const auto top = static_cast<int>(std::floor(area.y * scale));
  const Gtk::Allocation mine = get_allocation();
  queue_draw_area(mine.get_x() + left, mine.get_y() + top, static_cast<int>(std::ceil(area.maxX() * scale)) - left,
                  static_cast<int>(std::ceil(area.maxY() * scale)) - top);
}

void ListMenuItem::closeMenu() { menu_.cancel(); }

void ListMenuItem::sizeChanged() {
  const bool byKeyboard = !pointer_;
  queue_resize();
  menu_.fit();
  forgetRows(*this);
  // The row that was pressed is always the last one.
  if (byKeyboard) enterByKeyboard(End::last);
}

// --- Pointer

void ListMenuItem::hover(View* view) {
  const auto before = hovered_.lock();
  if (before.get() == view) return;
  if (before) before->mouseExited();
  hovered_ = view ? view->weak_from_this() : std::weak_ptr<View>();
  if (view) view->mouseEntered();
}

Point ListMenuItem::placeIn(double x, double y) const { return {x / textScale(*this), y / textScale(*this)}; }

void ListMenuItem::pointAt(const Point& point) {
  pointer_ = point;
  if (const auto pressed = pressed_.lock()) {
    pressed->mouseDragged(pressed->convertFrom(*list_, *pointer_));
    return;
  }
  hover(list_->hitTest(*pointer_));
}

bool ListMenuItem::on_enter_notify_event(GdkEventCrossing* event) {
  pointAt(placeIn(event->x, event->y));
  if (list_->scrollView()) showScroller();
  return Gtk::MenuItem::on_enter_notify_event(event);
}

bool ListMenuItem::on_leave_notify_event(GdkEventCrossing* event) {
  pointer_.reset();
  hover(nullptr);
  return Gtk::MenuItem::on_leave_notify_event(event);
}

bool ListMenuItem::on_motion_notify_event(GdkEventMotion* event) {
  pointAt(placeIn(event->x, event->y));
  return Gtk::MenuItem::on_motion_notify_event(event);
}

bool ListMenuItem::on_button_press_event(GdkEventButton* event) {
  pointAt(placeIn(event->x, event->y));
  const auto pressed = hovered_.lock();
  if (event->type == GDK_BUTTON_PRESS && event->button == GDK_BUTTON_PRIMARY && pressed) {
    pressed_ = pressed;
    pressed->mouseDown(pressed->convertFrom(*list_, *pointer_));
  }
  // The menu must not hear of it: it would close at the release.
  return true;
}

bool ListMenuItem::on_button_release_event(GdkEventButton* event) {
  if (event->button != GDK_BUTTON_PRIMARY) return true;
  auto released = pressed_.lock();
  pressed_.reset();
  pointAt(placeIn(event->x, event->y));
  // A press that began at the icon, dragged here, chooses as in any other item.
  if (!released) released = hovered_.lock();
  if (released) released->mouseUp(released->convertFrom(*list_, placeIn(event->x, event->y)));
  return true;
}

bool ListMenuItem::on_scroll_event(GdkEventScroll* event) {
  const ScrollView* const box = list_->scrollView();
  if (!box) return false;
  const double step = wheelStep(box->bounds().height);
  pointer_ = placeIn(event->x, event->y);
  if (event->direction == GDK_SCROLL_SMOOTH) {
    scrollBy(event->delta_y * step);
  } else if (event->direction == GDK_SCROLL_UP) {
    scrollBy(-step);
  } else if (event->direction == GDK_SCROLL_DOWN) {
    scrollBy(step);
  }
  return true;
}

void ListMenuItem::scrollBy(double distance) {
  list_->scrollView()->scrollBy(distance);
  if (pointer_) pointAt(*pointer_);
}

void ListMenuItem::scrolled() { showScroller(); }

void ListMenuItem::showScroller() {
  list_->scrollView()->setScrollerOpacity(1);
  fading_.disconnect();
  fading_ = Glib::signal_timeout().connect(
      [this] {
        fadeScroller();
        return false;
      },
      idleTime.count());
}

void ListMenuItem::fadeScroller() {
  fading_ = Glib::signal_timeout().connect(
      [this] {
        // Not while the user drags it.
        if (!pressed_.expired()) return true;
        ScrollView* const box = list_->scrollView();
        if (box) box->setScrollerOpacity(box->scrollerOpacity() - fadeStep);
        return box && box->scrollerOpacity() > 0;
      },
      fadeInterval.count());
}

void ListMenuItem::letGo() { pressed_.reset(); }

void ListMenuItem::on_unmap() {
  letGo();
  fading_.disconnect();
  Gtk::MenuItem::on_unmap();
}

// --- Keyboard

std::optional<std::size_t> ListMenuItem::currentRow() const {
  const auto hovered = hovered_.lock();
  for (std::size_t row = 0; row < list_->rowCount(); ++row) {
    if (&list_->row(row) == hovered.get()) return row;
  }
  return std::nullopt;
}

void ListMenuItem::walkTo(std::size_t row) {
  pointer_.reset();
  list_->scrollToVisible(list_->row(row));
  hover(&list_->row(row));
  tellFocus(*this, row);
}

void ListMenuItem::enterByKeyboard(End end) {
  if (list_->rowCount() > 0) walkTo(end == End::first ? 0 : list_->rowCount() - 1);
}

bool ListMenuItem::pressKey(guint key) {
  const auto current = currentRow();
  const auto stepTo = [&](std::size_t row) {
    if (row >= list_->rowCount()) return false;
    walkTo(row);
    return true;
  };
  switch (key) {
    case GDK_KEY_Down:
    case GDK_KEY_KP_Down:
      return stepTo(current ? *current + 1 : 0);
    case GDK_KEY_Up:
    case GDK_KEY_KP_Up:
      // Before the first row there is none.
      return current && stepTo(*current - 1);
    case GDK_KEY_Return:
    case GDK_KEY_KP_Enter:
    case GDK_KEY_ISO_Enter:
    case GDK_KEY_space:
    case GDK_KEY_KP_Space:
      if (current) {
        pointer_.reset();
        list_->row(*current).accessibilityPerformPress();
      }
      // The item as a whole has nothing to be chosen.
      return true;
    default:
      return false;
  }
}

}  // namespace tavelle
