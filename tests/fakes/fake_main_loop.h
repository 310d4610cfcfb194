#pragma once

#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "platform/main_loop.h"

namespace tavelle {

/// A main loop whose time stands still until a test turns it.
class FakeMainLoop final : public MainLoop {
 public:
  Registration after(double seconds, std::function<void()> action) override {
    const std::pair key(now_ + seconds, next_++);
    waiting_.emplace(key, std::move(action));
    return Registration([this, key] { waiting_.erase(key); });
  }

  Registration repeat(double seconds, double tolerance, std::function<void()> action) override {
    auto timer = std::make_shared<Repeating>(Repeating{seconds, tolerance, now_, std::move(action), {}});
    schedule(timer);
    return Registration([timer] { timer->next.cancel(); });
  }

  /// Lets `seconds` pass and runs what falls due, in order of time.
  void turn(double seconds) {
    const double end = now_ + seconds;
    while (!waiting_.empty() && waiting_.begin()->first.first <= end) {
      const auto due = waiting_.extract(waiting_.begin());
      now_ = due.key().first;
      due.mapped()();
    }
    now_ = end;
  }

  /// Which share of their tolerance repeated actions are late.
  double lateness = 0;

 private:
  struct Repeating {
    double seconds;
    double tolerance;
    double due;
    std::function<void()> action;
    Registration next;
  };

  void schedule(const std::shared_ptr<Repeating>& timer) {
    timer->due += timer->seconds;
    timer->next = after(timer->due + lateness * timer->tolerance - now_, [this, timer] {
      schedule(timer);
      timer->action();
    });
  }

  double now_ = 0;
  int next_ = 0;
  /// By time due, then by order of the calls.
  std::map<std::pair<double, int>, std::function<void()>> waiting_;
};

}  // namespace tavelle
