#pragma once

#include <functional>

#include "platform/registration.h"

namespace tavelle {

/// The main thread's queue. Main thread only.
class MainLoop {
 public:
  virtual ~MainLoop() = default;

  /// Runs `action` once, `seconds` from now at the earliest, on the main thread and never inside this call. Time in
  /// which the machine sleeps does not count. Dropping the handle before that means it never runs.
  virtual Registration after(double seconds, std::function<void()> action) = 0;
};

}  // namespace tavelle
