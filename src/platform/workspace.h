#pragma once

#include <filesystem>

namespace tavelle {

/// The desktop session around the program. Main thread only.
class Workspace {
 public:
  virtual ~Workspace() = default;

  /// Shows `folder` in the user's file browser. Returns at once; whether it worked is not told.
  virtual void openFolder(const std::filesystem::path& folder) = 0;
};

}  // namespace tavelle
