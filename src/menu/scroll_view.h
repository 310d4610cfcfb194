#pragma once

#include <memory>

#include "menu/view.h"

namespace tavelle {

/// Plain content of a scroll view.
class FlippedView final : public View {
 public:
  using View::View;
};

/// A window onto a higher view, with a bar that lies over the content at the right edge. It scrolls from edge to edge
/// and never beyond.
class ScrollView final : public View {
 public:
  explicit ScrollView(const Rect& frame, Autoresizing autoresizing = Autoresizing::none);

  /// Once. The document keeps its size and lies at the top; its width follows.
  void setDocument(std::shared_ptr<View> document);
  /// What the content may take of the width: all of it, since the bar needs no room of its own.
  double contentWidth() const { return bounds().width; }

  /// How far the top of the content lies above the top of this view, in points.
  double offset() const;
  double maximumOffset() const;
  /// Goes as near to the offset as the content allows. Whether anything has moved.
  bool scrollTo(double offset);
  bool scrollBy(double distance) { return scrollTo(offset() + distance); }
  /// Scrolls just as far as is needed to bring `area`, in the document's coordinates, into sight.
  void scrollToVisible(const Rect& area);

  /// How much of the bar can be seen, from 0.0 (at first) to 1.0. The host shows it while the content is scrolled or
  /// the pointer is over the view, and fades it out when the view is idle. Only a bar in sight can be dragged.
  void setScrollerOpacity(double opacity);
  /// The bar's place; empty when all of the content is in sight.
  Rect scrollerKnob() const;

  void setFrame(const Rect& frame) override;

 private:
  class Scroller;

  void placeScroller();

  View* document_ = nullptr;
  Scroller* scroller_ = nullptr;
};

}  // namespace tavelle
