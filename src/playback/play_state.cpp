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
  // Without a wallpaper on show the windows are hidden, and a page left in them could still be heard.
  const bool rests = !current_ || shouldPause(paused_, covered_, index);
  // Sent even when nothing seems to change: a page that was loaded afresh plays, whatever the one before did.
  webViews_[index]->evaluate(rests ? pauseJS : playJS, {});
}

void Controller::togglePause() {
  paused_ = !paused_;
  for (std::size_t i = 0; i < webViews_.size(); ++i) applyPlayState(i);
  log(paused_ ? "paused" : "resumed");
}

}  // namespace tavelle
