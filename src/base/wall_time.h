#pragma once

#include <chrono>

namespace tavelle {

/// An instant on the calendar, UTC.
using WallTime = std::chrono::sys_time<std::chrono::nanoseconds>;

/// Earlier than any instant that a clock or a file system can report.
inline constexpr WallTime distantPast = WallTime::min();

}  // namespace tavelle
