#pragma once

#include <chrono>
#include <functional>

#include "base/registration.h"

namespace tavelle {

/// The main thread's queue. Main thread only.
class MainLoop {
 public:
  virtual ~MainLoop() = default;

  /// Runs `action` once, after `delay` at the earliest, on the main thread and never inside this call. Time in which
  /// the machine sleeps does not count. Dropping the handle before that means it never runs.
  virtual Registration after(std::chrono::milliseconds delay, std::function<void()> action) = 0;

  /// Runs `action` once every `interval` on the main thread, for the first time after one, until the handle is dropped.
  /// Each run may come late by up to `tolerance`, so that it can share a wake-up of the processor with
  /// something else; lateness does not add up, and what a busy or sleeping machine missed is not made up for. Time in
  /// which the machine sleeps does not count.
  virtual Registration repeat(std::chrono::milliseconds interval, std::chrono::milliseconds tolerance,
                              std::function<void()> action) = 0;
};

}  // namespace tavelle
