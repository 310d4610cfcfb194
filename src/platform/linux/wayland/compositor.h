#pragma once

#include <memory>

namespace tavelle {

class Monitors;
class WaylandGlobals;
class WindowManager;

/// Finds out, once, in which way the compositor tells of its windows, best first:
/// - sway's socket tells where each window is, and what panels leave of each monitor;
/// - Plasma's window management tells where windows are, too, but not where panels are;
/// - wlr-foreign-toplevel-management, which many compositors have, tells only of maximised and full-screen windows, and
///   on which monitor they are.
/// Where there is none of them there is never a list of windows. Waits for sway a quarter of a second at most, now and
/// with each question. To the others it listens from the first time that somebody wants to know of windows, and waits
/// then, for two seconds at most, so that the first list is complete. Both are of the same connection and outlive what
/// is given.
std::unique_ptr<WindowManager> findCompositor(const WaylandGlobals& globals, const Monitors& monitors);

}  // namespace tavelle
