#pragma once

#include <cstdint>
#include <iosfwd>
#include <span>
#include <vector>

#include "base/geometry.h"

namespace tavelle {

class Screens;
class WindowList;
struct Screen;

/// The places of the windows that may hide the desktop from the user, front to back, in global display space: those of
/// other processes than `ownProcess`, of the ordinary layer, visible, and more than 40 pixels wide and high.
std::vector<Rect> otherWindowRects(const WindowList& windows, std::int32_t ownProcess);

/// How much of the screen's desktop (what panels leave of the screen) the windows hide, from 0.0 to 1.0: the share of a
/// fixed grid of sample points that lie in at least one of them. A point on the left or top edge of a window lies in
/// it, one on the right or bottom edge does not. 0.0 when the screen has no desktop.
double coverage(const Screen& screen, std::span<const Rect> windows);

/// Whether a screen with this coverage is as good as hidden.
bool countsAsCovered(double coverage);

/// Prints for each screen how much of its desktop other windows cover, and what that means for the wallpaper there.
void reportCoverage(const Screens& screens, const WindowList& windows, std::int32_t ownProcess, std::ostream& out);

}  // namespace tavelle
