#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tavelle {

class MenuList;
struct MenuItem;

/// The items of a menu from top to bottom.
using MenuItems = std::vector<MenuItem>;

/// One item of a menu. Texts are UTF-8.
struct MenuItem {
  enum class Kind { action, heading, separator, list };

  Kind kind = Kind::action;
  std::string title{};
  /// Runs when the item is chosen, after the menu has closed. An item without one can't be chosen.
  std::function<void()> action{};
  /// Whether a check mark stands before the title, for an item that can have one.
  std::optional<bool> checked{};
  /// Opens beside the item, when it is not empty.
  MenuItems submenu{};
  /// What an item of the kind `list` shows, alive while the menu holds it.
  std::shared_ptr<MenuList> list{};
};

/// The program's icon in the desktop's panel, whose click opens the menu. It goes when this dies. Main thread only.
class StatusItem {
 public:
  virtual ~StatusItem() = default;

  /// Opens the menu as the user's click would: beside the icon where its place is known, else at the pointer.
  virtual void performClick() = 0;

  virtual bool isMenuOpen() const = 0;
};

/// Main thread only.
class StatusItems {
 public:
  virtual ~StatusItems() = default;

  /// Puts the icon into the panel; where there is no panel, it comes when one does. `menuNeedsUpdate` fills the menu,
  /// empty by then, each time before it opens; what it made is kept until the next time.
  virtual std::unique_ptr<StatusItem> make(std::function<void(MenuItems&)> menuNeedsUpdate) = 0;
};

}  // namespace tavelle
