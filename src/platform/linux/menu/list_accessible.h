#pragma once

#include <gtkmm/menuitem.h>

#include <cstddef>
#include <memory>

namespace tavelle {

class MenuList;

/// Lets assistive technology see the list's rows below `item`, from the first to the last, also those scrolled out of
/// sight: each a menu item with its title, its check mark and a press action. For an item of a class of its own, before
/// anybody has asked for its accessible object.
void describeToAssistiveTechnology(Gtk::MenuItem& item, const std::shared_ptr<MenuList>& list);

/// The list has other rows than before.
void forgetRows(Gtk::MenuItem& item);

/// The keyboard is on this row now, by its number from 0.
void tellFocus(Gtk::MenuItem& item, std::size_t row);

}  // namespace tavelle
