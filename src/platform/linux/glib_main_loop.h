#pragma once

#include "platform/main_loop.h"

namespace tavelle {

/// GLib's default main context. Its clock stands still while the machine sleeps.
class GLibMainLoop final : public MainLoop {
 public:
  Registration after(double seconds, std::function<void()> action) override;
  Registration repeat(double seconds, double tolerance, std::function<void()> action) override;
};

}  // namespace tavelle
