#pragma once

#include <chrono>
#include <functional>
#include <list>
#include <utility>

#include "base/registration.h"

namespace tavelle {

class MainLoop;

/// Delayed calls that nobody waits for one by one. Those that have not come when this dies never come.
/// Main thread only.
class PendingCalls {
 public:
  explicit PendingCalls(MainLoop& mainLoop) : mainLoop_(mainLoop) {}

  /// As `MainLoop::after`. `action` may destroy this object.
  void after(std::chrono::milliseconds delay, std::function<void()> action);
  /// On the main loop's next turn.
  void soon(std::function<void()> action) { after(std::chrono::milliseconds(0), std::move(action)); }

 private:
  MainLoop& mainLoop_;
  std::list<Registration> waiting_;
};

}  // namespace tavelle
