#include "desktop_picture/agent_keeper.h"
#include "desktop_picture/wallpaper_store.h"
#include "model/controller.h"
#include "platform/main_loop.h"

namespace tavelle {
namespace {

constexpr std::chrono::milliseconds recheckDelay{2000};

}  // namespace

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
