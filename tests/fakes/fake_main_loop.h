#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <utility>

#include "platform/main_loop.h"

namespace tavelle {

/// A main loop whose time stands still until a test turns it.
class FakeMainLoop final : public MainLoop {
 public:
  Registration after(double seconds, std::function<void()> action) override {
    return add(seconds, {std::move(action), 0});
  }

  Registration repeat(double seconds, double tolerance, std::function<void()> action) override {
    return add(seconds + (late ? tolerance : 0), {std::move(action), seconds});
  }

  /// Lets `seconds` pass and runs what falls due, in order of time.
  void turn(double seconds) {
    const double end = now_ + seconds;
    while (!waiting_.empty() && waiting_.begin()->first.first <= end) {
      auto due = waiting_.extract(waiting_.begin());
      now_ = std::max(now_, due.key().first);
      const auto action = due.mapped().action;
      if (const double period = due.mapped().period; period > 0) {
        while (due.key().first <= now_) due.key().first += period;
        waiting_.insert(std::move(due));
      }
      action();
    }
    now_ = end;
  }

  /// Lets `seconds` pass in which the loop is kept from running anything.
  void block(double seconds) {
    now_ += seconds;
    turn(0);
  }

  /// Whether repeated actions come as late as they may.
  bool late = false;

 private:
  struct Timer {
    std::function<void()> action;
    /// 0 for one that runs once.
    double period;
  };

  Registration add(double seconds, Timer timer) {
    const int number = next_++;
    waiting_.emplace(std::pair(now_ + seconds, number), std::move(timer));
    return Registration(
        [this, number] { std::erase_if(waiting_, [&](const auto& each) { return each.first.second == number; }); });
  }

  double now_ = 0;
  int next_ = 0;
  /// By time due, then by order of the calls.
  std::map<std::pair<double, int>, Timer> waiting_;
};

}  // namespace tavelle
