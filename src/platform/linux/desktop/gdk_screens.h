#pragma once

#include <gdk/gdk.h>

#include "platform/screens.h"

namespace tavelle {

/// GDK's monitors.
class GdkScreens final : public Screens {
 public:
  std::vector<Screen> list() const override;
  Registration onChange(std::function<void()> changed) override;
};

/// Where the main screen's top-left corner lies in GDK's own coordinates, which `Screen::bounds` count from.
GdkPoint mainScreenOrigin();

}  // namespace tavelle
