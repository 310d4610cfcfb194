#pragma once

#include "platform/workspace.h"

namespace tavelle {

class DisplayServer;

/// The session: its default handlers, what the display server tells of windows, and logind's sleep signal.
class LinuxWorkspace final : public Workspace {
 public:
  explicit LinuxWorkspace(DisplayServer& server) : server_(server) {}

  void openFolder(const std::filesystem::path& folder) override;
  Registration onEvent(std::function<void()> happened) override;

 private:
  DisplayServer& server_;
};

}  // namespace tavelle
