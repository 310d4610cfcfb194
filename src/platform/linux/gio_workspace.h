#pragma once

#include "platform/workspace.h"

namespace tavelle {

/// The session's default handlers, through GIO.
class GioWorkspace final : public Workspace {
 public:
  void openFolder(const std::filesystem::path& folder) override;
};

}  // namespace tavelle
