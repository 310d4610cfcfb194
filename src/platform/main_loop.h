#pragma once

#include <functional>

#include "base/registration.h"

namespace tavelle {

/// The main thread's queue. Main thread only.
class MainLoop {
 public:
  virtual ~MainLoop() = default;

  /// Runs `action` once, `seconds` from now at the earliest, on the main thread and never inside this call. Time in
  /// which the machine sleeps does not count. Dropping the handle before that means it never runs.
  virtual Registration after(double seconds, std::function<void()> action) = 0;

  /// Runs `action` every `seconds` on the main thread, for the first time `seconds` from now, until the handle is
  /// dropped. Each run may come up to `tolerance` seconds late, so that it can share a wake-up of the processor with
  /// something else; lateness does not add up, and what a busy or sleeping machine missed is not made up for. Time in
  /// which the machine sleeps does not count.
  virtual Registration repeat(double seconds, double tolerance, std::function<void()> action) = 0;
};

}  // namespace tavelle
