#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/geometry.h"
#include "platform/canvas.h"

namespace tavelle {

/// How the menus of the desktop look.
struct MenuTheme {
  /// That of a menu's items.
  TextFont font;
  /// Behind the item under the pointer.
  Color accent;
  /// Text on the accent colour.
  Color selectedText;
  Color label;
  /// Of what is less important than a label.
  Color secondaryLabel;
};

/// The item of an open menu that shows a tree of views.
class MenuHost {
 public:
  virtual ~MenuHost() = default;

  /// What the tree shows in `area`, in its root's coordinates, is out of date. Nothing may be drawn inside this call.
  virtual void needsDisplay(const Rect& area) = 0;
  /// A scroll view of the tree has moved its content, for whatever reason.
  virtual void scrolled() = 0;
  /// The tree has other views and another height than before: the menu measures it again, and stays open.
  virtual void sizeChanged() = 0;
  /// Closes the menu at once. It may end the tree.
  virtual void closeMenu() = 0;
};

/// What an assistive technology is told of a view that it takes for an item of a menu.
struct Accessibility {
  std::string label;
  bool checked;
  /// Whether a click, or the return key, would hit it.
  bool focused;
};

/// A rectangle that draws and hears of the pointer, with further ones in it. Sizes are points; each view has
/// coordinates of its own, with the origin in its top-left corner and y growing downward. Subviews lie one over the
/// other in the order in which they were added. Main thread only.
///
/// A superview owns its subviews; whoever else knows one holds it weakly.
class View : public std::enable_shared_from_this<View> {
 public:
  enum class Autoresizing { none, widthFollowsSuperview };

  explicit View(const Rect& frame, Autoresizing autoresizing = Autoresizing::none);
  View(const View&) = delete;
  View& operator=(const View&) = delete;
  virtual ~View();

  /// In the superview's coordinates.
  const Rect& frame() const { return frame_; }
  /// In the view's own.
  Rect bounds() const { return {0, 0, frame_.width, frame_.height}; }
  /// Subviews whose width follows grow and shrink by as much as this view does.
  virtual void setFrame(const Rect& frame);

  /// None for the root of a tree.
  const View* superview() const { return superview_; }
  /// For each view once.
  template <typename T>
  T& addSubview(std::shared_ptr<T> view) {
    T& added = *view;
    adopt(std::move(view));
    return added;
  }
  void removeSubviews();

  /// Only for the root of a tree. `host` must outlive the tree, or be replaced by none.
  void setHost(MenuHost* host) { host_ = host; }
  /// The view has to be drawn again, all of it or `area` of it; the root's host hears of what is in sight.
  void setNeedsDisplay() { setNeedsDisplay(bounds()); }
  void setNeedsDisplay(const Rect& area);

  /// Draws the view and what is in it, as far as it lies in `visible`, given in the view's own coordinates.
  void render(Canvas& canvas, const MenuTheme& theme, const Rect& visible) const;

  /// The deepest view at a point of this view's coordinates; none outside of the view.
  virtual View* hitTest(const Point& point);
  /// `area`, given in this view's coordinates, in those of `ancestor`, some superview of it or the view itself.
  Rect convert(Rect area, const View& ancestor) const;
  /// `point`, given in the coordinates of `ancestor`, in those of this view.
  Point convertFrom(const View& ancestor, const Point& point) const;

  // What the host tells, with points in this view's coordinates. A press is followed by the drags and the release that
  // end it, wherever the pointer is then; a release alone comes from a press that began outside of the tree.
  virtual void mouseEntered() {}
  virtual void mouseExited() {}
  virtual void mouseDown(const Point& /*point*/) {}
  virtual void mouseDragged(const Point& /*point*/) {}
  virtual void mouseUp(const Point& /*point*/) {}

  /// None for a view that only arranges others.
  virtual std::optional<Accessibility> accessibility() const { return std::nullopt; }
  /// What a click on the view would do. Whether it does anything.
  virtual bool accessibilityPerformPress() { return false; }

 protected:
  /// Draws the view itself, in its own coordinates; its subviews come over it.
  virtual void draw(Canvas& /*canvas*/, const MenuTheme& /*theme*/) const {}
  /// Of the tree that the view is in; none where no menu shows it.
  MenuHost* host() const;

 private:
  void adopt(std::shared_ptr<View> view);

  Rect frame_;
  const Autoresizing autoresizing_;
  View* superview_ = nullptr;
  MenuHost* host_ = nullptr;
  std::vector<std::shared_ptr<View>> subviews_;
};

/// A window onto a higher view, with a bar that lies over the content at the right edge and takes none of its width. It
/// scrolls from edge to edge and never beyond.
class ScrollView final : public View {
 public:
  explicit ScrollView(const Rect& frame, Autoresizing autoresizing = Autoresizing::none);

  /// Once. The document keeps its size and lies at the top; its width follows.
  void setDocument(std::shared_ptr<View> document);

  /// How far the top of the content lies above the top of this view, in points.
  double offset() const;
  /// Goes as near to the offset as the content allows.
  void scrollTo(double offset);
  void scrollBy(double distance) { scrollTo(offset() + distance); }
  /// Scrolls just as far as is needed to bring `area`, in the document's coordinates, into sight.
  void scrollToVisible(const Rect& area);

  /// How much of the bar can be seen, from 0.0 (at first) to 1.0. The host shows it while the content is scrolled or
  /// the pointer is over the view, and fades it out when the view is idle. Only a bar in sight can be dragged.
  double scrollerOpacity() const;
  void setScrollerOpacity(double opacity);
  /// The bar's place; empty when all of the content is in sight.
  Rect scrollerKnob() const;

  void setFrame(const Rect& frame) override;

 private:
  class Scroller;

  double maximumOffset() const;
  void placeScroller();

  View* document_ = nullptr;
  Scroller* scroller_ = nullptr;
};

/// What a menu shows as one of its items: rows one below the other, some of them in a box that scrolls.
class MenuList : public View {
 public:
  explicit MenuList(const Rect& frame, Autoresizing autoresizing = Autoresizing::none)
      : View(frame, autoresizing), preferredWidth_(frame.width) {}

  /// The width that the list was made with, however wide a menu has made it since.
  double preferredWidth() const { return preferredWidth_; }
  /// Of all rows, those out of sight among them.
  virtual std::size_t rowCount() const = 0;
  /// From the first to the last. Good until the host hears of another size.
  virtual View& row(std::size_t index) const = 0;
  /// The box that scrolls; none when all rows stand in the list itself.
  virtual ScrollView* scrollView() const = 0;
  /// Scrolls the box so that the row is in sight.
  virtual void scrollToVisible(const View& row) = 0;

 private:
  const double preferredWidth_;
};

}  // namespace tavelle
