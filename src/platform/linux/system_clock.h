#pragma once

#include "platform/clock.h"

namespace tavelle {

class SystemClock final : public Clock {
 public:
  WallTime now() const override { return std::chrono::system_clock::now(); }
};

}  // namespace tavelle
