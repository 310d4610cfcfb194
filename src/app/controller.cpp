#include "model/controller.h"

#include "desktop_picture/agent_keeper.h"
#include "guide/guide.h"
#include "platform/application.h"
#include "platform/screens.h"
#include "platform/status_item.h"
#include "platform/wallpaper_window.h"

namespace tavelle {

Controller::Controller(const Platform& platform)
    : platform_(platform),
      library_(platform.home / "Pictures/Wallpapers"),
      logURL_(platform.home / "Library/Logs/Tavelle.log"),
      pending_(platform.mainLoop) {}

Controller::~Controller() = default;

void Controller::applicationShouldHandleReopen() { showGuide(); }

void Controller::quit() { platform_.application.terminate(); }

}  // namespace tavelle
