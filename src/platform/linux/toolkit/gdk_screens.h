#pragma once

#include <functional>
#include <vector>

#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/toolkit/work_areas.h"
#include "platform/screens.h"

namespace tavelle {

/// The toolkit's monitors, and what panels leave of them.
class GdkScreens final : public Screens {
 public:
  GdkScreens(Monitors& monitors, const WorkAreas& workAreas) : monitors_(monitors), workAreas_(workAreas) {}

  std::vector<Screen> list() const override;
  Registration onChange(std::function<void()> changed) override;

 private:
  Monitors& monitors_;
  const WorkAreas& workAreas_;
};

}  // namespace tavelle
