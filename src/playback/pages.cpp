#include <algorithm>

#include "model/controller.h"
#include "platform/wallpaper_window.h"
#include "playback/page_scripts.h"
#include "playback/script_value.h"

namespace tavelle {
namespace {

/// A page takes a moment to reach its pace after it has loaded.
constexpr double measurementDelay = 2.0;

}  // namespace

void Controller::load(WebView& view) {
  if (current_) view.loadFile(current_->page(), current_->page().parent_path());
}

void Controller::webViewDidFinish(WebView& view) {
  const auto found =
      std::find_if(webViews_.begin(), webViews_.end(), [&](const auto& each) { return &*each == &view; });
  if (found != webViews_.end()) applyPlayState(static_cast<std::size_t>(found - webViews_.begin()));

  view.evaluate(
      probeJS, [this](const Result<ScriptValue>& answer) { log("loaded: " + (answer ? scriptText(*answer) : "nil")); });
  if (!webViews_.empty() && &*webViews_.front() == &view) {
    pending_.after(measurementDelay, [this] { measureFrameRate(); });
  }
}

void Controller::webViewDidFail(WebView&, const Error& error) { log("load failed: " + error.description); }

void Controller::webViewProcessDidTerminate(WebView& view) {
  log("web content process ended; reloading");
  view.reload();
}

void Controller::webViewDidReceiveMessage(WebView&, const ScriptValue& body) { log("page: " + scriptText(body)); }

}  // namespace tavelle
