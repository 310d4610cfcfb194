#pragma once

#include "platform/workspace.h"

namespace tavelle {

class WindowManager;

/// The session: its default handlers, what the window manager tells of windows, and logind's sleep signal.
class LinuxWorkspace final : public Workspace {
 public:
  explicit LinuxWorkspace(WindowManager& manager) : manager_(manager) {}

  void openFolder(const std::filesystem::path& folder) override;
  Registration onEvent(std::function<void()> happened) override;

 private:
  WindowManager& manager_;
};

}  // namespace tavelle
