#pragma once

#include <gtkmm/menu.h>
#include <gtkmm/menuitem.h>

#include <memory>

#include "platform/view.h"

namespace tavelle {

struct MenuItem;

/// Has the theme's menu items take the measures of the wallpaper list's rows: their height, the place of their text,
/// and a highlight with round corners. Colours and fonts stay the theme's.
void useMenuStyle(Gtk::Menu& menu);
/// Once in a process, before that.
void installMenuStyle();

/// Makes the item, of any kind but a list, with its submenu; `item` must outlive what is made.
std::unique_ptr<Gtk::MenuItem> makeMenuItem(const MenuItem& item);

/// How many pixels a point of the list's takes: it grows with the desktop's text.
double textScale(const Gtk::Widget& widget);

/// How the theme draws this item of a menu, with sizes in the list's points.
MenuTheme menuTheme(Gtk::MenuItem& item);

}  // namespace tavelle
