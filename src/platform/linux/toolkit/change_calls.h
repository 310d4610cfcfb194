#pragma once

#include <functional>
#include <map>

#include "base/registration.h"

namespace tavelle {

/// Functions that want to be called after changes that come in bursts. Main thread only.
class ChangeCalls {
 public:
  ChangeCalls() = default;
  ChangeCalls(const ChangeCalls&) = delete;
  ChangeCalls& operator=(const ChangeCalls&) = delete;
  ~ChangeCalls();

  /// `changed` may end its own registration and others.
  Registration add(std::function<void()> changed);
  /// Has all functions called on the main loop, once for all the times that this is called meanwhile.
  void soon();

 private:
  static int call(void* data);

  std::map<unsigned, std::function<void()>> functions_;
  unsigned next_ = 0;
  unsigned idle_ = 0;
};

}  // namespace tavelle
