#pragma once

#include <chrono>
#include <filesystem>

#include "base/registration.h"

namespace tavelle {

class MainLoop;
class Processes;

/// Keeps the wallpaper agent running: starts it again when it ends, at once after a good while, later and later when it
/// keeps ending. The agent ends with this. Main thread only.
class AgentKeeper {
 public:
  /// `agent` is its executable.
  AgentKeeper(Processes& processes, MainLoop& mainLoop, std::filesystem::path agent);
  AgentKeeper(const AgentKeeper&) = delete;
  AgentKeeper& operator=(const AgentKeeper&) = delete;
  ~AgentKeeper() = default;

  void start();

 private:
  void startLater();

  Processes& processes_;
  MainLoop& mainLoop_;
  const std::filesystem::path agent_;
  /// Until the next start after an end.
  std::chrono::milliseconds pause_;
  Registration running_;
  Registration restart_;
  Registration steady_;
};

}  // namespace tavelle
