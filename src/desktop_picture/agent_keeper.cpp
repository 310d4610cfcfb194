#include "desktop_picture/agent_keeper.h"

#include <algorithm>
#include <utility>

#include "platform/main_loop.h"
#include "platform/processes.h"

namespace tavelle {
namespace {

constexpr std::chrono::milliseconds shortestPause{250};
constexpr std::chrono::minutes longestPause{1};
/// An agent that has run for so long is well.
constexpr std::chrono::seconds steadyTime{30};

}  // namespace

AgentKeeper::AgentKeeper(Processes& processes, MainLoop& mainLoop, std::filesystem::path agent)
    : processes_(processes), mainLoop_(mainLoop), agent_(std::move(agent)), pause_(shortestPause) {}

void AgentKeeper::start() {
  auto started = processes_.start(agent_, [this] { startLater(); });
  if (!started) return startLater();
  running_ = std::move(started).value();
  steady_ = mainLoop_.after(steadyTime, [this] { pause_ = shortestPause; });
}

void AgentKeeper::startLater() {
  steady_.cancel();
  restart_ = mainLoop_.after(pause_, [this] { start(); });
  pause_ = std::min<std::chrono::milliseconds>(2 * pause_, longestPause);
}

}  // namespace tavelle
