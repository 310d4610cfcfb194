#include "coverage/coverage.h"

#include <algorithm>
#include <array>
#include <bit>
#include <ostream>

#include "base/text.h"
#include "platform/screens.h"
#include "platform/window_list.h"

namespace tavelle {
namespace {

constexpr std::size_t columns = 48;
constexpr std::size_t rows = 30;
constexpr double coveredThreshold = 0.985;
/// A window up to this transparent shows all that is behind it.
constexpr double invisibleAlpha = 0.05;
/// Neither side of a window that counts is this short.
constexpr double negligibleSide = 40;

bool hidesDesktop(const WindowDescription& window, std::int32_t ownProcess) {
  return window.layer == 0 && window.owner != ownProcess && !(window.alpha && !(*window.alpha > invisibleAlpha)) &&
         window.bounds && window.bounds->width > negligibleSide && window.bounds->height > negligibleSide;
}

/// The part of the screen that panels leave free, in global display space.
Rect desktopArea(const Screen& screen) {
  // The frames grow upwards, the bounds downwards; only what panels take from each side is the same in both.
  const double left = screen.visibleFrame.x - screen.frame.x;
  const double right = screen.frame.maxX() - screen.visibleFrame.maxX();
  const double top = screen.frame.maxY() - screen.visibleFrame.maxY();
  const double bottom = screen.visibleFrame.y - screen.frame.y;
  return {screen.bounds.x + left, screen.bounds.y + top, screen.bounds.width - left - right,
          screen.bounds.height - top - bottom};
}

/// The centres of `Count` equal cells of a line, in rising order.
template <std::size_t Count>
std::array<double, Count> cellCentres(double start, double length) {
  std::array<double, Count> centres{};
  for (std::size_t i = 0; i < Count; ++i) {
    centres[i] = start + (static_cast<double>(i) + 0.5) * length / static_cast<double>(Count);
  }
  return centres;
}

/// The sample points of a desktop, and which of them are covered: a bit for each point, a word for each row.
class SampleGrid {
 public:
  explicit SampleGrid(const Rect& area)
      : x_(cellCentres<columns>(area.x, area.width)), y_(cellCentres<rows>(area.y, area.height)) {}

  void cover(const Rect& rect) {
    const std::uint64_t covered = bitsBelow(firstFrom(x_, rect.maxX())) & ~bitsBelow(firstFrom(x_, rect.x));
    const std::size_t end = firstFrom(y_, rect.maxY());
    for (std::size_t row = firstFrom(y_, rect.y); row < end; ++row) covered_[row] |= covered;
  }

  int count() const {
    int count = 0;
    for (const std::uint64_t row : covered_) count += std::popcount(row);
    return count;
  }

 private:
  /// The index of the first of the rising `places` that is not below `bound`.
  template <std::size_t Count>
  static std::size_t firstFrom(const std::array<double, Count>& places, double bound) {
    return static_cast<std::size_t>(std::lower_bound(places.begin(), places.end(), bound) - places.begin());
  }

  static std::uint64_t bitsBelow(std::size_t bit) { return (std::uint64_t{1} << bit) - 1; }

  std::array<double, columns> x_;
  std::array<double, rows> y_;
  std::array<std::uint64_t, rows> covered_{};
};

}  // namespace

std::vector<Rect> otherWindowRects(const WindowList& windows, std::int32_t ownProcess) {
  std::vector<Rect> rects;
  for (const WindowDescription& window : windows.onScreen().value_or(std::vector<WindowDescription>())) {
    if (hidesDesktop(window, ownProcess)) rects.push_back(*window.bounds);
  }
  return rects;
}

double coverage(const Screen& screen, std::span<const Rect> windows) {
  const Rect area = desktopArea(screen);
  if (area.isEmpty()) return 0;
  SampleGrid grid(area);
  for (const Rect& window : windows) grid.cover(window);
  return grid.count() / static_cast<double>(columns * rows);
}

bool countsAsCovered(double coverage) { return coverage >= coveredThreshold; }

void reportCoverage(const Screens& screens, const WindowList& windows, std::int32_t ownProcess, std::ostream& out) {
  const auto rects = otherWindowRects(windows, ownProcess);
  int number = 0;
  for (const Screen& screen : screens.list()) {
    const double covered = coverage(screen, rects);
    out << "screen " << ++number << ": " << fixedDecimal(covered * 100, 1) << "% covered by " << rects.size()
        << " windows -> " << (countsAsCovered(covered) ? "paused" : "playing") << '\n';
  }
}

}  // namespace tavelle
