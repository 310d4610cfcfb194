#pragma once

#include <memory>

#include "platform/window_list.h"

namespace tavelle {

class ChangeCalls;
class Monitors;
class WaylandGlobals;

// The windows that a compositor tells of one by one, as they come, change and go, until what is given ends. Each way
// waits for what the compositor has to tell at the start, a second at most for each answer, and gives null where the
// compositor doesn't offer it. `globals` and `monitors` are of the same connection and outlive the list, and so does
// `changes`, which are called after windows may have come, gone, moved or changed their state. Not every move is told.

/// By Plasma's window management, for programs whose desktop entry asks for it by X-KDE-Wayland-Interfaces. It tells
/// where windows are, and on which virtual desktops, but not which of them are on an activity that is not shown.
std::unique_ptr<WindowList> plasmaWindows(const WaylandGlobals& globals, const Monitors& monitors,
                                          ChangeCalls& changes);

/// By wlr-foreign-toplevel-management: the maximised and full-screen windows. Where other windows are, and on which
/// workspace any is, it doesn't tell: a maximised window of a workspace that is not shown is in the list where the
/// compositor doesn't take it off its output.
std::unique_ptr<WindowList> foreignToplevels(const WaylandGlobals& globals, const Monitors& monitors,
                                             ChangeCalls& changes);

}  // namespace tavelle
