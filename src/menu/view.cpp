#include "menu/view.h"

#include <algorithm>
#include <utility>

#include "platform/canvas.h"

namespace tavelle {
namespace {

Rect moved(const Rect& area, double x, double y) { return {area.x + x, area.y + y, area.width, area.height}; }

}  // namespace

View::View(const Rect& frame, Autoresizing autoresizing) : frame_(frame), autoresizing_(autoresizing) {}

View::~View() { removeSubviews(); }

void View::setFrame(const Rect& frame) {
  const double growth = frame.width - frame_.width;
  frame_ = frame;
  if (growth == 0) return;
  for (const auto& each : subviews_) {
    if (each->autoresizing_ != Autoresizing::widthFollowsSuperview) continue;
    Rect wider = each->frame_;
    wider.width = std::max(0.0, wider.width + growth);
    each->setFrame(wider);
  }
}

void View::adopt(std::shared_ptr<View> view) {
  view->superview_ = this;
  subviews_.push_back(std::move(view));
}

void View::removeSubviews() {
  for (const auto& each : subviews_) each->superview_ = nullptr;
  subviews_.clear();
}

void View::setNeedsDisplay(const Rect& area) {
  const Rect seen = intersection(area, bounds());
  if (seen.isEmpty()) return;
  if (superview_) {
    superview_->setNeedsDisplay(moved(seen, frame_.x, frame_.y));
  } else if (host_) {
    host_->needsDisplay(seen);
  }
}

void View::tellScrolled() const {
  const View* root = this;
  while (root->superview_) root = root->superview_;
  if (root->host_) root->host_->scrolled();
}

void View::render(Canvas& canvas, const MenuTheme& theme, const Rect& visible) const {
  const Rect seen = intersection(visible, bounds());
  if (seen.isEmpty()) return;
  const CanvasState outer(canvas);
  canvas.clip(seen);
  draw(canvas, theme);
  for (const auto& each : subviews_) {
    const Rect& place = each->frame_;
    if (intersection(seen, place).isEmpty()) continue;
    const CanvasState inner(canvas);
    canvas.translate(place.x, place.y);
    each->render(canvas, theme, moved(seen, -place.x, -place.y));
  }
}

View* View::hitTest(const Point& point) {
  if (!bounds().contains(point)) return nullptr;
  View* deepest = this;
  for (const auto& each : subviews_) {
    const Rect& place = each->frame_;
    // Later ones lie over earlier ones.
    if (View* const hit = each->hitTest({point.x - place.x, point.y - place.y})) deepest = hit;
  }
  return deepest;
}

Rect View::convert(Rect area, const View& ancestor) const {
  for (const View* each = this; each && each != &ancestor; each = each->superview_) {
    area = moved(area, each->frame_.x, each->frame_.y);
  }
  return area;
}

Point View::convertFrom(const View& ancestor, const Point& point) const {
  const Rect origin = convert({}, ancestor);
  return {point.x - origin.x, point.y - origin.y};
}

}  // namespace tavelle
