#include <algorithm>
#include <string>

#include "coverage/coverage.h"
#include "model/controller.h"
#include "platform/main_loop.h"
#include "platform/screens.h"
#include "platform/status_item.h"
#include "platform/web_view.h"
#include "platform/workspace.h"

namespace tavelle {
namespace {

constexpr std::chrono::milliseconds checkInterval{500};
constexpr std::chrono::milliseconds checkTolerance{150};
/// Desktops animate what they do to windows; by then they have finished.
constexpr std::chrono::milliseconds recheckDelay{400};

}  // namespace

void Controller::startCoverageWatch() {
  coverageTimer_ = platform_.mainLoop.repeat(checkInterval, checkTolerance, [this] {
    // An open menu must not stutter, and the user looks at that.
    if (!statusItem_ || !statusItem_->isMenuOpen()) checkCoverage();
  });
  keep(platform_.workspace.onEvent([this] { coverageEvent(); }));
  checkCoverage();
}

void Controller::coverageEvent() {
  checkCoverage();
  pending_.after(recheckDelay, [this] { checkCoverage(); });
}

void Controller::checkCoverage() {
  const auto rects = otherWindowRects(platform_.windowList, platform_.processId);
  const auto screens = platform_.screens.list();
  // There may be fewer screens than pages until the windows are rebuilt.
  for (std::size_t i = 0; i < std::min(shownScreens(), screens.size()); ++i) {
    const bool covered = countsAsCovered(coverage(screens[i], rects));
    if (covered == shownScreen(i).covered) continue;
    setCovered(i, covered);
    applyPlayState(i);
    log((covered ? "desktop covered on screen " : "desktop visible on screen ") + std::to_string(i) +
        (covered ? ": paused" : ": playing"));
  }
}

}  // namespace tavelle
