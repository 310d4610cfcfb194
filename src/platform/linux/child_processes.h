#pragma once

#include "platform/processes.h"

namespace tavelle {

/// Child processes, watched by GLib's main loop.
class ChildProcesses final : public Processes {
 public:
  Result<void> run(const std::filesystem::path& program, const std::vector<std::string>& arguments) override;
  Result<Registration> start(const std::filesystem::path& program, std::function<void(Ending)> ended) override;
};

}  // namespace tavelle
