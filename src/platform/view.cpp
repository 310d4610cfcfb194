#include "platform/view.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/canvas.h"

namespace tavelle {
namespace {

constexpr double knobWidth = 6;
/// Between the knob's track and the edges of the view.
constexpr double knobMargin = 2;
/// Long libraries leave a knob that can still be caught.
constexpr double shortestKnob = 24;
constexpr double knobStrength = 0.5;

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

MenuHost* View::host() const {
  const View* root = this;
  while (root->superview_) root = root->superview_;
  return root->host_;
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

// --- The box that scrolls

class ScrollView::Scroller final : public View {
 public:
  explicit Scroller(ScrollView& scrolled) : View({}), scrolled_(scrolled) {}

  double opacity() const { return opacity_; }
  void setOpacity(double opacity) {
    opacity_ = std::clamp(opacity, 0.0, 1.0);
    setNeedsDisplay();
  }

  View* hitTest(const Point& point) override { return opacity_ > 0 ? View::hitTest(point) : nullptr; }
  void mouseDown(const Point& point) override { grip_ = point.y; }
  void mouseDragged(const Point& point) override {
    const double track = scrolled_.bounds().height - 2 * knobMargin - frame().height;
    if (!grip_ || track <= 0) return;
    const double top = frame().y + point.y - *grip_ - knobMargin;
    scrolled_.scrollTo(top / track * scrolled_.maximumOffset());
  }
  void mouseUp(const Point& /*point*/) override { grip_.reset(); }

 private:
  void draw(Canvas& canvas, const MenuTheme& theme) const override {
    if (opacity_ <= 0) return;
    Color color = theme.label;
    color.opacity *= knobStrength * opacity_;
    canvas.fillRoundedRect(bounds(), knobWidth / 2, color);
  }

  ScrollView& scrolled_;
  double opacity_ = 0;
  /// Where the knob was caught, from its own top.
  std::optional<double> grip_;
};

ScrollView::ScrollView(const Rect& frame, Autoresizing autoresizing) : View(frame, autoresizing) {}

void ScrollView::setDocument(std::shared_ptr<View> document) {
  document_ = &addSubview(std::move(document));
  scroller_ = &addSubview(std::make_shared<Scroller>(*this));
  placeScroller();
}

double ScrollView::offset() const { return document_ ? -document_->frame().y : 0; }

double ScrollView::maximumOffset() const {
  return document_ ? std::max(0.0, document_->frame().height - bounds().height) : 0;
}

void ScrollView::scrollTo(double offset) {
  const double reached = std::clamp(offset, 0.0, maximumOffset());
  if (!document_ || reached == this->offset()) return;
  Rect place = document_->frame();
  place.y = -reached;
  document_->setFrame(place);
  placeScroller();
  setNeedsDisplay();
  if (MenuHost* const menu = host()) menu->scrolled();
}

void ScrollView::scrollToVisible(const Rect& area) {
  if (area.y < offset()) {
    scrollTo(area.y);
  } else if (area.maxY() > offset() + bounds().height) {
    scrollTo(area.maxY() - bounds().height);
  }
}

double ScrollView::scrollerOpacity() const { return scroller_ ? scroller_->opacity() : 0; }

void ScrollView::setScrollerOpacity(double opacity) {
  if (scroller_) scroller_->setOpacity(opacity);
}

Rect ScrollView::scrollerKnob() const {
  const double furthest = maximumOffset();
  if (furthest <= 0) return {};
  const double track = bounds().height - 2 * knobMargin;
  const double length = std::min(track, std::max(shortestKnob, track * bounds().height / document_->frame().height));
  return {bounds().width - knobMargin - knobWidth, knobMargin + (track - length) * offset() / furthest, knobWidth,
          length};
}

void ScrollView::placeScroller() {
  if (scroller_) scroller_->setFrame(scrollerKnob());
}

void ScrollView::setFrame(const Rect& frame) {
  View::setFrame(frame);
  scrollTo(offset());
  placeScroller();
}

}  // namespace tavelle
