#include "model/controller.h"
#include "platform/web_view.h"
#include "playback/page_scripts.h"

namespace tavelle {

bool Controller::shouldRest(std::size_t index) const { return paused_ || (index < covered_.size() && covered_[index]); }

void Controller::applyPlayState(std::size_t index) {
  if (index >= webViews_.size()) return;
  // Sent even when nothing seems to change: a page that was loaded afresh plays, whatever the one before did.
  webViews_[index]->evaluate(shouldRest(index) ? pauseJS : playJS, {});
}

void Controller::togglePause() {
  paused_ = !paused_;
  for (std::size_t i = 0; i < webViews_.size(); ++i) applyPlayState(i);
  log(paused_ ? "paused" : "resumed");
}

}  // namespace tavelle
