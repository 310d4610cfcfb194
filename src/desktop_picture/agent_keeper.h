#pragma once

#include <chrono>
#include <filesystem>

#include "base/registration.h"

namespace tavelle {

class MainLoop;
class Processes;
enum class Ending;

/// Keeps the wallpaper agent running: starts it again when it ends, at once when it was asked to end, as each sync of
/// the store does, and otherwise later and later while it keeps ending. The agent ends with this. Main thread only.
class AgentKeeper {
 public:
  /// `agent` is its executable.
  AgentKeeper(Processes& processes, MainLoop& mainLoop, std::filesystem::path agent);
  AgentKeeper(const AgentKeeper&) = delete;
  AgentKeeper& operator=(const AgentKeeper&) = delete;
  ~AgentKeeper() = default;

  void start();

 private:
  void ended(Ending ending);
  void startLater();

  Processes& processes_;
  MainLoop& mainLoop_;
  const std::filesystem::path agent_;
  /// Until the next start after an end.
  std::chrono::milliseconds pause_;
  /// Whether the agent has been running long enough to have been asked to end.
  bool settled_ = false;
  Registration running_;
  Registration restart_;
  Registration settling_;
  Registration steady_;
};

}  // namespace tavelle
