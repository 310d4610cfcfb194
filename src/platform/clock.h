#pragma once

#include "base/wall_time.h"

namespace tavelle {

/// The calendar clock. It jumps when the user or the network sets it; nothing may be timed with it.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual WallTime now() const = 0;
};

}  // namespace tavelle
