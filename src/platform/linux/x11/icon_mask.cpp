#include "platform/linux/x11/icon_mask.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tavelle {
namespace {

/// By so much of 255 the same picture may differ, drawn twice.
constexpr int sameColor = 6;
/// So many rectangles are drawn and sent without being felt.
constexpr std::size_t mostRectangles = 8000;
constexpr int coarsestGrain = 64;

int whole(double value) { return static_cast<int>(std::lround(value)); }

int channel(std::uint32_t pixel, int shift) { return static_cast<int>(pixel >> static_cast<unsigned>(shift) & 0xFFU); }

bool differ(std::uint32_t a, std::uint32_t b) {
  if (((a ^ b) & 0xFFFFFFU) == 0) return false;
  constexpr std::array shifts{0, 8, 16};
  return std::any_of(shifts.begin(), shifts.end(),
                     [&](int shift) { return std::abs(channel(a, shift) - channel(b, shift)) > sameColor; });
}

}  // namespace

IconMask::IconMask(int width, int height)
    : pixels_(static_cast<double>(width) * height), rows_(static_cast<std::size_t>(height)) {}

IconMask::Row IconMask::joined(Row spans) {
  std::sort(spans.begin(), spans.end(), [](const Span& a, const Span& b) { return a.begin < b.begin; });
  Row row;
  for (const Span& each : spans) {
    if (row.empty() || row.back().end < each.begin) {
      row.push_back(each);
    } else {
      row.back().end = std::max(row.back().end, each.end);
    }
  }
  return row;
}

bool IconMask::compare(const Rect& area, std::span<const std::uint32_t> window,
                       std::span<const std::uint32_t> picture) {
  const int left = whole(area.x);
  const int right = whole(area.maxX());
  bool changed = false;
  std::size_t pixel = 0;
  for (int y = whole(area.y); y < whole(area.maxY()); ++y) {
    Row& row = rows_[static_cast<std::size_t>(y)];
    Row spans;
    for (int x = left; x < right; ++x, ++pixel) {
      if (!differ(window[pixel], picture[pixel])) continue;
      if (spans.empty() || spans.back().end != x) spans.push_back({x, x});
      ++spans.back().end;
    }
    // What lies beside the area stays.
    for (const auto& [begin, end] : row) {
      if (begin < left) spans.push_back({begin, std::min(end, left)});
      if (end > right) spans.push_back({std::max(begin, right), end});
    }
    spans = joined(std::move(spans));
    if (spans == row) continue;
    row = std::move(spans);
    changed = true;
  }
  return changed;
}

double IconMask::share() const {
  double icons = 0;
  for (const Row& row : rows_) {
    for (const auto& [begin, end] : row) icons += end - begin;
  }
  return pixels_ > 0 ? icons / pixels_ : 0;
}

std::vector<Rect> IconMask::around(const Rect& area) const {
  std::vector<Rect> found = around(area, 1);
  for (int grain = 4; found.size() > mostRectangles && grain <= coarsestGrain; grain *= 4) found = around(area, grain);
  return found;
}

/// The icons of some rows together, as far as they lie between two columns, which the grain is counted from.
IconMask::Row IconMask::iconsIn(int top, int bottom, int left, int right, int grain) const {
  Row spans;
  for (int y = std::max(top, 0); y < std::min(bottom, static_cast<int>(rows_.size())); ++y) {
    for (const Span& each : rows_[static_cast<std::size_t>(y)]) {
      const int begin = std::max(each.begin, left) - left;
      const int end = std::min(each.end, right) - left;
      if (begin < end)
        spans.push_back({begin / grain * grain, std::min((end + grain - 1) / grain * grain, right - left)});
    }
  }
  return joined(std::move(spans));
}

std::vector<Rect> IconMask::around(const Rect& area, int grain) const {
  const int left = whole(area.x);
  const int right = whole(area.maxX());
  const int top = whole(area.y);
  const int bottom = whole(area.maxY());
  std::vector<Rect> found;
  Row before;
  std::size_t band = 0;
  for (int y = top; y < bottom; y += grain) {
    const int height = std::min(grain, bottom - y);
    Row icons = iconsIn(y, y + height, left, right, grain);
    if (y > top && icons == before) {
      std::for_each(found.begin() + static_cast<std::ptrdiff_t>(band), found.end(),
                    [&](Rect& each) { each.height += height; });
      continue;
    }
    band = found.size();
    before = icons;
    icons.push_back({right - left, right - left});
    int gap = 0;
    for (const auto& [begin, end] : icons) {
      if (begin > gap) {
        found.push_back({static_cast<double>(gap), static_cast<double>(y - top), static_cast<double>(begin - gap),
                         static_cast<double>(height)});
      }
      gap = end;
    }
  }
  return found;
}

}  // namespace tavelle
