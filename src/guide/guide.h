#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "base/registration.h"
#include "platform/guide_window.h"
#include "platform/pending_calls.h"
#include "platform/web_view.h"

namespace tavelle {

class Controller;
struct Platform;

/// The tutorial: the page "tutorial.html" in a window of its own. Main thread only.
///
/// The page defines `goTo(number)`, which turns to a page of the tutorial, 0 being the first, and `setLogin(on)`, which
/// tells it whether the application opens at login. It posts "close", "add", "folder", "menu" and "login" to the
/// message handler "app".
class Guide final : public GuideWindowDelegate, public WebViewDelegate {
 public:
  /// Both must outlive the guide.
  Guide(Controller& app, const Platform& platform);

  /// Brings the tutorial to the front, turned to `page`. A window that is not open yet comes on screen when its page
  /// has loaded, or after a second and a half. Without the page's file there is a line in the event log, and no window.
  void show(int page = 0);

 private:
  void guideWindowWillClose(GuideWindow& window) override;
  void webViewDidFinish(WebView& view) override;
  void webViewDidFail(WebView& view, const Error& error) override;
  void webViewProcessDidTerminate(WebView& view) override;
  void webViewDidReceiveMessage(WebView& view, const ScriptValue& body) override;

  void open(const std::filesystem::path& file);
  void close();
  void showIfHidden();
  void receive(const std::string& message);
  void evaluate(const std::string& script);
  std::string setLoginScript() const;

  Controller& app_;
  const Platform& platform_;
  /// Both or none.
  std::unique_ptr<GuideWindow> window_;
  std::unique_ptr<WebView> web_;
  /// What was asked for when the window was made.
  int page_ = 0;
  bool reloaded_ = false;

  Registration showAnyway_;
  PendingCalls pending_;
};

}  // namespace tavelle
