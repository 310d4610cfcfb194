#pragma once

#include <chrono>

namespace tavelle {

/// An instant on the calendar, UTC.
using WallTime = std::chrono::sys_time<std::chrono::nanoseconds>;

/// Earlier than any instant that a clock or a file system can report.
inline constexpr WallTime distantPast = WallTime::min();

/// The calendar clock. It jumps when the user or the network sets it; nothing may be timed with it.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual WallTime now() const = 0;
};

}  // namespace tavelle
