#pragma once

#include <gdk/gdk.h>

#include <vector>

#include "base/geometry.h"

namespace tavelle {

/// What panels and docks leave of each monitor. Main thread only.
class WorkAreas {
 public:
  virtual ~WorkAreas() = default;

  /// The work areas of all the monitors that there are, in the order given and in GDK's coordinates; the whole monitor
  /// where nobody tells. May block for an answer.
  virtual std::vector<Rect> of(const std::vector<GdkMonitor*>& monitors) const = 0;
};

}  // namespace tavelle
