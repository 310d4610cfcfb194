#include "model/controller.h"
#include "playback/page_scripts.h"

namespace tavelle {
namespace {

/// A page takes a moment to reach its pace after it has loaded.
constexpr std::chrono::milliseconds measurementDelay{2000};

}  // namespace

void Controller::load(WebView& view) {
  if (current_) view.loadFile(current_->page(), current_->page().parent_path());
}

void Controller::webViewDidFinish(WebView& view) {
  const auto screen = screenOf(view);
  if (screen) applyPlayState(*screen);
  view.evaluate(
      probeJS, [this](const Result<ScriptValue>& answer) { log("loaded: " + (answer ? scriptText(*answer) : "nil")); });
  if (screen == std::size_t{0}) pending_.after(measurementDelay, [this] { measureFrameRate(); });
}

void Controller::webViewDidFail(WebView&, const Error& error) { log("load failed: " + error.description); }

void Controller::webViewProcessDidTerminate(WebView& view) {
  log("web content process ended; reloading");
  view.reload();
}

void Controller::webViewDidReceiveMessage(WebView&, const ScriptValue& body) { log("page: " + scriptText(body)); }

bool Controller::shouldRest(std::size_t index) const {
  return paused_ || (index < shownScreens() && shownScreen(index).covered);
}

void Controller::applyPlayState(std::size_t index) {
  if (index >= shownScreens()) return;
  // Sent even when nothing seems to change: a page that was loaded afresh plays, whatever the one before did.
  shownScreen(index).webView->evaluate(shouldRest(index) ? pauseJS : playJS, {});
}

void Controller::togglePause() {
  paused_ = !paused_;
  for (std::size_t i = 0; i < shownScreens(); ++i) applyPlayState(i);
  log(paused_ ? "paused" : "resumed");
}

}  // namespace tavelle
