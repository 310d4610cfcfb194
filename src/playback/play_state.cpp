#include "playback/play_state.h"

#include "app/controller.h"
#include "platform/web_view.h"
#include "playback/page_scripts.h"

namespace tavelle {

bool shouldPause(bool paused, const std::vector<bool>& covered, std::size_t index) {
  return paused || (index < covered.size() && covered[index]);
}

void Controller::applyPlayState(std::size_t index) {
  if (index >= webViews_.size()) return;
  // Sent even when nothing seems to change: a page that was loaded afresh plays, whatever the one before did.
  webViews_[index]->evaluate(shouldPause(paused_, covered_, index) ? pauseJS : playJS, {});
}

void Controller::togglePause() {
  paused_ = !paused_;
  for (std::size_t i = 0; i < webViews_.size(); ++i) applyPlayState(i);
  log(paused_ ? "paused" : "resumed");
}

}  // namespace tavelle
