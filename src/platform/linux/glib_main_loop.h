#pragma once

#include "platform/main_loop.h"

namespace tavelle {

/// GLib's default main context. Its clock stands still while the machine sleeps.
class GLibMainLoop final : public MainLoop {
 public:
  Registration after(std::chrono::milliseconds delay, std::function<void()> action) override;
  Registration repeat(std::chrono::milliseconds interval, std::chrono::milliseconds tolerance,
                      std::function<void()> action) override;
};

}  // namespace tavelle
