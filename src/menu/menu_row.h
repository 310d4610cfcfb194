#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/view.h"

namespace tavelle {

/// One item of a menu as desktops draw it, that runs its action on a click. It never closes the menu by itself.
class MenuRow final : public View {
 public:
  struct Content {
    std::string title;
    /// Whether a check mark stands before the title. The room for it is there in any case.
    bool checked = false;
    /// The canvas's symbol that stands at the right end.
    std::optional<std::string> symbol = std::nullopt;
    /// Whether the title is less important than others, and paler.
    bool secondary = false;
    /// The row, and the list that it is in, may be gone when it returns.
    std::function<void()> action;
  };

  /// Of every row, in points.
  static constexpr double height = 22;

  /// Lies at the superview's top-left corner; its width follows.
  MenuRow(double width, Content content);

  const std::string& title() const { return content_.title; }
  bool checked() const { return content_.checked; }
  const std::optional<std::string>& symbol() const { return content_.symbol; }

  /// Whether it is drawn as the one that a click, or the return key, would hit.
  void setHovered(bool hovered);

  void mouseEntered() override { setHovered(true); }
  void mouseExited() override { setHovered(false); }
  /// Runs the action when the pointer is still over the row.
  void mouseUp(const Point& point) override;

  std::optional<Accessibility> accessibility() const override;
  bool accessibilityPerformPress() override;

 private:
  void draw(Canvas& canvas, const MenuTheme& theme) const override;

  const Content content_;
  bool hovered_ = false;
};

}  // namespace tavelle
