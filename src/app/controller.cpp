#include "model/controller.h"

#include "guide/guide.h"
#include "platform/application.h"
#include "platform/screens.h"
#include "platform/status_item.h"
#include "platform/wallpaper_window.h"

namespace tavelle {

Controller::Controller(const Platform& platform)
    : platform_(platform),
      library_(platform.home / "Pictures/Wallpapers"),
      logFile_(platform.home / "Library/Logs/Tavelle.log"),
      agentKeeper_(platform.processes, platform.mainLoop, platform.agent),
      pending_(platform.mainLoop) {}

Controller::~Controller() = default;

void Controller::quit() { platform_.application.terminate(); }

}  // namespace tavelle
