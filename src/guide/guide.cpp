#include "guide/guide.h"

#include <filesystem>
#include <utility>
#include <variant>

#include "model/controller.h"
#include "model/settings_keys.h"
#include "platform/files.h"
#include "platform/login_item.h"
#include "platform/main_loop.h"
#include "platform/platform.h"
#include "platform/user_defaults.h"

namespace tavelle {
namespace {

constexpr int width = 760;
constexpr int height = 600;
constexpr int dragStrip = 28;
constexpr std::chrono::milliseconds patience{1500};
constexpr std::chrono::milliseconds firstLaunchDelay{800};
std::string goToScript(int page) { return "goTo(" + std::to_string(page) + ")"; }

}  // namespace

Guide::Guide(Controller& app, const Platform& platform) : app_(app), platform_(platform), pending_(platform.mainLoop) {}

void Guide::show(int page) {
  if (window_) {
    evaluate(goToScript(page));
    window_->show();
    return;
  }
  const auto& resources = platform_.resources;
  const auto file = resources ? *resources / "tutorial.html" : std::filesystem::path();
  if (!resources || !platform_.files.exists(file)) {
    app_.log("tutorial.html is missing from the app bundle");
    return;
  }
  page_ = page;
  open(file);
}

void Guide::open(const std::filesystem::path& file) {
  web_ = platform_.webViews.make(
      {.width = width, .height = height, .messageHandler = "app", .userScripts = {}, .kind = WebViews::Kind::document},
      *this);
  window_ = platform_.guideWindows.make(
      {.title = "How to Use Tavelle", .width = width, .height = height, .dragStrip = dragStrip}, *web_, *this);
  reloaded_ = false;
  web_->loadFile(file, file.parent_path());
  showAnyway_ = platform_.mainLoop.after(patience, [this] { showIfHidden(); });
}

void Guide::showIfHidden() {
  if (window_ && !window_->isVisible()) window_->show();
}

void Guide::evaluate(const std::string& script) {
  if (web_) web_->evaluate(script, nullptr);
}

std::string Guide::setLoginScript() const {
  const bool on = platform_.loginItem.status() == LoginItemStatus::enabled;
  return on ? "setLogin(true)" : "setLogin(false)";
}

void Guide::webViewDidFinish(WebView& view) {
  if (&view != web_.get()) return;
  evaluate(goToScript(page_) + "; " + setLoginScript());
  showIfHidden();
}

void Guide::webViewDidFail(WebView& view, const Error& error) {
  if (&view != web_.get()) return;
  app_.log("guide: load failed: " + error.description);
  close();
}

void Guide::webViewProcessDidTerminate(WebView& view) {
  if (&view != web_.get()) return;
  const bool again = !std::exchange(reloaded_, true);
  app_.log(again ? "guide: page process ended; reloading" : "guide: page process ended again; closing");
  if (again) {
    view.reload();
  } else {
    close();
  }
}

void Guide::webViewDidReceiveMessage(WebView& view, const ScriptValue& body) {
  const auto* const message = std::get_if<std::string>(&body.value);
  if (&view != web_.get() || !message) return;
  // What follows may ask the user something, and the window may be closed meanwhile; the view must be out of its own
  // callback by then.
  pending_.soon([this, text = *message] { receive(text); });
}

void Guide::receive(const std::string& message) {
  if (message == "close") {
    close();
  } else if (message == "add") {
    app_.addWallpaper();
  } else if (message == "folder") {
    app_.showFolder();
  } else if (message == "menu") {
    app_.openMenu();
  } else if (message == "login") {
    app_.toggleLogin();
    evaluate(setLoginScript());
  }
}

void Guide::close() {
  if (window_) window_->performClose();
}

void Guide::guideWindowWillClose(GuideWindow& window) {
  if (&window != window_.get()) return;
  struct Closed {
    std::unique_ptr<GuideWindow> window;
    std::unique_ptr<WebView> web;
  };
  pending_.soon([closed = std::make_shared<Closed>(Closed{std::move(window_), std::move(web_)})] {
    closed->web.reset();
    closed->window.reset();
  });
}

void Controller::showGuide() {
  if (!guide_) guide_ = std::make_unique<Guide>(*this, platform_);
  guide_->show();
}

void Controller::showGuideAtFirstLaunch() {
  if (platform_.defaults.boolean(keys::guideShown)) return;
  platform_.defaults.set(keys::guideShown, true);
  pending_.after(firstLaunchDelay, [this] { showGuide(); });
}

}  // namespace tavelle
