#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <utility>

#include "platform/main_loop.h"

namespace tavelle {

using std::chrono_literals::operator""ms;

/// A main loop whose time stands still until a test turns it.
class FakeMainLoop final : public MainLoop {
 public:
  Registration after(std::chrono::milliseconds delay, std::function<void()> action) override {
    return add(delay, {std::move(action), {}});
  }

  Registration repeat(std::chrono::milliseconds interval, std::chrono::milliseconds tolerance,
                      std::function<void()> action) override {
    return add(late ? interval + tolerance : interval, {std::move(action), interval});
  }

  /// Lets time pass and runs what falls due, in order of time.
  void turn(std::chrono::milliseconds time) {
    const auto end = now_ + time;
    while (!waiting_.empty() && waiting_.begin()->first.first <= end) {
      auto due = waiting_.extract(waiting_.begin());
      now_ = std::max(now_, due.key().first);
      const auto action = due.mapped().action;
      if (const auto period = due.mapped().period; period.count() > 0) {
        while (due.key().first <= now_) due.key().first += period;
        waiting_.insert(std::move(due));
      }
      action();
    }
    now_ = end;
  }

  /// Lets time pass in which the loop is kept from running anything.
  void block(std::chrono::milliseconds time) {
    now_ += time;
    turn(std::chrono::milliseconds(0));
  }

  /// Whether repeated actions come as late as they may.
  bool late = false;

 private:
  struct Timer {
    std::function<void()> action;
    /// 0 for one that runs once.
    std::chrono::milliseconds period;
  };

  Registration add(std::chrono::milliseconds delay, Timer timer) {
    const int number = next_++;
    waiting_.emplace(std::pair(now_ + delay, number), std::move(timer));
    return Registration(
        [this, number] { std::erase_if(waiting_, [&](const auto& each) { return each.first.second == number; }); });
  }

  std::chrono::milliseconds now_{0};
  int next_ = 0;
  /// By time due, then by order of the calls.
  std::map<std::pair<std::chrono::milliseconds, int>, Timer> waiting_;
};

}  // namespace tavelle
