#pragma once

#include <functional>
#include <vector>

#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/toolkit/window_manager.h"
#include "platform/screens.h"

namespace tavelle {

/// The toolkit's monitors, and what panels leave of them.
class GdkScreens final : public Screens {
 public:
  GdkScreens(Monitors& monitors, const WindowManager& manager) : monitors_(monitors), manager_(manager) {}

  std::vector<Screen> list() const override;
  Registration onChange(std::function<void()> changed) override;

 private:
  Monitors& monitors_;
  const WindowManager& manager_;
};

}  // namespace tavelle
