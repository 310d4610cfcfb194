#pragma once

#include "platform/workspace.h"

namespace tavelle {

/// The session: its default handlers, what the window manager tells on the root window, and logind's sleep signal.
class LinuxWorkspace final : public Workspace {
 public:
  void openFolder(const std::filesystem::path& folder) override;
  Registration onEvent(std::function<void()> happened) override;
};

}  // namespace tavelle
