#include "desktop_picture/agent_keeper.h"

#include <algorithm>
#include <utility>

#include "desktop_picture/wallpaper_store.h"
#include "model/controller.h"
#include "platform/main_loop.h"
#include "platform/processes.h"

namespace tavelle {
namespace {

constexpr std::chrono::milliseconds shortestPause{250};
constexpr std::chrono::minutes longestPause{1};
/// One that ends earlier had no reason to go on: another agent serves this session.
constexpr std::chrono::milliseconds settlingTime{500};
/// An agent that has run for so long is well.
constexpr std::chrono::seconds steadyTime{30};

constexpr std::chrono::seconds recheckDelay{2};

}  // namespace

AgentKeeper::AgentKeeper(Processes& processes, MainLoop& mainLoop, std::filesystem::path agent)
    : processes_(processes), mainLoop_(mainLoop), agent_(std::move(agent)), pause_(shortestPause) {}

void AgentKeeper::start() {
  auto started = processes_.start(agent_, [this](Ending ending) { ended(ending); });
  if (!started) return startLater();
  running_ = std::move(started).value();
  settled_ = false;
  settling_ = mainLoop_.after(settlingTime, [this] { settled_ = true; });
  steady_ = mainLoop_.after(steadyTime, [this] { pause_ = shortestPause; });
}

void AgentKeeper::ended(Ending ending) {
  settling_.cancel();
  steady_.cancel();
  if (ending == Ending::unasked || !settled_) return startLater();
  restart_ = mainLoop_.after(std::chrono::milliseconds(0), [this] { start(); });
}

void AgentKeeper::startLater() {
  restart_ = mainLoop_.after(pause_, [this] { start(); });
  pause_ = std::min<std::chrono::milliseconds>(2 * pause_, longestPause);
}

void Controller::startAgent() {
  agentKeeper_ = std::make_unique<AgentKeeper>(platform_.processes, platform_.mainLoop, platform_.agent);
  agentKeeper_->start();
}

void Controller::scheduleSpacesSync(const std::filesystem::path& still, std::chrono::milliseconds delay, int retries) {
  spacesSyncWork_ = platform_.mainLoop.after(delay, [this, still, retries] {
    const StoreServices services{platform_.clock, platform_.files, platform_.processes, wallpaperStore(platform_.home)};
    const bool changed = syncAllSpaces(still, services, [this](const std::string& message) { log(message); });
    if (changed && retries >= 1) scheduleSpacesSync(still, recheckDelay, retries - 1);
  });
}

}  // namespace tavelle
