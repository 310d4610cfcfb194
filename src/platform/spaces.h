#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/registration.h"

namespace tavelle {

/// The desktop's workspaces. Main thread only.
class Spaces {
 public:
  virtual ~Spaces() = default;

  /// An identifier for each, in their order. Empty when the desktop has no such notion.
  virtual std::vector<std::string> list() const = 0;

  /// Calls `changed` on the main loop after their number may have changed.
  virtual Registration onChange(std::function<void()> changed) = 0;
};

}  // namespace tavelle
