#include "menu/menu_row.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tavelle {
namespace {

/// Of the highlight, at the left and the right end.
constexpr double highlightInset = 5;
constexpr double highlightRadius = 5;
constexpr double checkMarkLeft = 10;
constexpr double titleLeft = 26;
constexpr double rightMargin = 14;
/// Between the title and the symbol.
constexpr double symbolGap = 6;
/// By how many points symbols are smaller than the text beside them.
constexpr double symbolReduction = 2;

}  // namespace

MenuRow::MenuRow(double width, Content content)
    : View({0, 0, width, height}, Autoresizing::widthFollowsSuperview), content_(std::move(content)) {}

void MenuRow::setHovered(bool hovered) {
  hovered_ = hovered;
  setNeedsDisplay();
}

void MenuRow::mouseUp(const Point& point) {
  if (bounds().contains(point)) accessibilityPerformPress();
}

std::optional<Accessibility> MenuRow::accessibility() const {
  return Accessibility{.label = content_.title, .checked = content_.checked, .focused = hovered_};
}

bool MenuRow::accessibilityPerformPress() {
  // The action may end this row, and itself with it.
  const auto run = content_.action;
  run();
  return true;
}

void MenuRow::draw(Canvas& canvas, const MenuTheme& theme) const {
  const double width = bounds().width;
  if (hovered_) {
    canvas.fillRoundedRect({highlightInset, 0, std::max(0.0, width - 2 * highlightInset), height}, highlightRadius,
                           theme.accent);
  }
  const Color& normal = content_.secondary ? theme.secondaryLabel : theme.label;
  const Color& color = hovered_ ? theme.selectedText : normal;

  const double symbolPoints = theme.font.size - symbolReduction;
  const auto centred = [&](const Size& size) { return (height - size.height) / 2; };
  if (const auto size = canvas.symbolSize("checkmark", symbolPoints); content_.checked && size) {
    canvas.drawSymbol("checkmark", symbolPoints, {checkMarkLeft, centred(*size)}, color);
  }
  double reserve = rightMargin;
  const auto size = content_.symbol ? canvas.symbolSize(*content_.symbol, symbolPoints) : std::nullopt;
  if (size) {
    canvas.drawSymbol(*content_.symbol, symbolPoints, {width - rightMargin - size->width, centred(*size)}, color);
    reserve = size->width + symbolGap + rightMargin;
  }

  const FontMetrics metrics = canvas.metrics(theme.font);
  const double lineHeight = std::ceil(metrics.ascender - metrics.descender);
  const double room = std::max(0.0, width - titleLeft - reserve);
  canvas.drawText(content_.title, {titleLeft, std::floor((height - lineHeight) / 2), room, lineHeight}, theme.font,
                  color);
}

}  // namespace tavelle
