#include "platform/pending_calls.h"

#include <utility>

#include "platform/main_loop.h"

namespace tavelle {

void PendingCalls::after(std::chrono::milliseconds delay, std::function<void()> action) {
  const auto place = waiting_.emplace(waiting_.end());
  *place = mainLoop_.after(delay, [this, place, action = std::move(action)] {
    // The action may destroy this object, and the loop keeps the closure only until the registration dies.
    const auto run = action;
    waiting_.erase(place);
    run();
  });
}

}  // namespace tavelle
