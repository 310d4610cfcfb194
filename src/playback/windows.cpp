#include <algorithm>

#include "base/text.h"
#include "model/controller.h"
#include "platform/main_loop.h"
#include "platform/screens.h"
#include "platform/wallpaper_window.h"
#include "playback/page_scripts.h"

namespace tavelle {
namespace {

/// Monitors come and go in bursts while the user plugs or the machine wakes up.
constexpr std::chrono::milliseconds rebuildDelay{500};

}  // namespace

void Controller::buildWindows() {
  screenSignature_ = currentSignature();
  for (const auto& window : windows_) window->orderOut();
  windows_.clear();
  webViews_.clear();
  covered_.clear();
  for (const Screen& screen : platform_.screens.list()) buildWindow(screen);
  log("showing on " + std::to_string(shownScreens()) + " display(s)");
}

std::size_t Controller::shownScreens() const { return windows_.size(); }

Controller::ShownScreen Controller::shownScreen(std::size_t index) const {
  return {*windows_[index], webViews_[index], index < covered_.size() && covered_[index]};
}

std::optional<std::size_t> Controller::screenOf(const WebView& view) const {
  const auto found =
      std::find_if(webViews_.begin(), webViews_.end(), [&](const auto& each) { return &*each == &view; });
  if (found == webViews_.end()) return std::nullopt;
  return static_cast<std::size_t>(found - webViews_.begin());
}

void Controller::setCovered(std::size_t index, bool covered) {
  covered_.resize(shownScreens(), false);
  covered_[index] = covered;
}

void Controller::buildWindow(const Screen& screen) {
  auto webView = platform_.webViews.make({.width = screen.frame.width,
                                          .height = screen.frame.height,
                                          .messageHandler = "log",
                                          .userScripts = pageScripts(frameSettings())},
                                         *this);
  load(*webView);
  auto window = platform_.windows.make(screen);
  window->setContent(*webView);
  // With nothing to show the plain desktop stays in sight.
  if (current_) window->orderFront();
  webViews_.push_back(std::move(webView));
  windows_.push_back(std::move(window));
}

std::string Controller::currentSignature() const {
  std::string signature;
  for (const Screen& screen : platform_.screens.list()) {
    if (!signature.empty()) signature += '|';
    const Rect& frame = screen.frame;
    signature += "(" + shortestDecimal(frame.x) + ", " + shortestDecimal(frame.y) + ", " +
                 shortestDecimal(frame.width) + ", " + shortestDecimal(frame.height) + ")";
  }
  return signature;
}

void Controller::screensChanged() {
  if (currentSignature() == screenSignature_) return;
  rebuildRequest_ = platform_.mainLoop.after(rebuildDelay, [this] { rebuildIfNeeded(); });
}

void Controller::rebuildIfNeeded() {
  if (currentSignature() != screenSignature_) buildWindows();
}

}  // namespace tavelle
