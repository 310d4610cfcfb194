#pragma once

#include <functional>
#include <utility>

namespace tavelle {

/// Stands for a callback that somebody holds: a timer that waits, an observer that listens.
/// When it dies, or is cancelled, the callback is never called again. Cancelling is allowed at any time, also from
/// inside the callback, after the callback has run, and twice. It must not outlive the service that gave it.
class [[nodiscard]] Registration {
 public:
  Registration() = default;
  explicit Registration(std::function<void()> undo) : undo_(std::move(undo)) {}
  Registration(Registration&& other) noexcept : undo_(std::exchange(other.undo_, nullptr)) {}
  Registration& operator=(Registration&& other) noexcept {
    if (this != &other) {
      cancel();
      undo_ = std::exchange(other.undo_, nullptr);
    }
    return *this;
  }
  Registration(const Registration&) = delete;
  Registration& operator=(const Registration&) = delete;
  ~Registration() { cancel(); }

  void cancel() {
    if (const auto undo = std::exchange(undo_, nullptr)) undo();
  }

 private:
  std::function<void()> undo_;
};

}  // namespace tavelle
