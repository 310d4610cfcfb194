#pragma once

#include <functional>
#include <list>

#include "base/registration.h"

namespace tavelle {

class MainLoop;

/// Delayed calls that nobody waits for one by one. Those that have not come when this dies never come.
/// Main thread only.
class PendingCalls {
 public:
  explicit PendingCalls(MainLoop& mainLoop) : mainLoop_(mainLoop) {}

  /// As `MainLoop::after`. `action` may destroy this object.
  void after(double seconds, std::function<void()> action);

 private:
  MainLoop& mainLoop_;
  std::list<Registration> waiting_;
};

}  // namespace tavelle
