#pragma once

#include <cstdint>
#include <iosfwd>

namespace tavelle {

class Screens;
class WindowList;

/// Prints for each screen how much of its desktop other windows cover, and what that means for the wallpaper there.
void reportCoverage(const Screens& screens, const WindowList& windows, std::int32_t ownProcess, std::ostream& out);

}  // namespace tavelle
