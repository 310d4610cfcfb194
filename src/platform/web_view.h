#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/result.h"

namespace tavelle {

struct ScriptValue;
using ScriptArray = std::vector<ScriptValue>;
/// An object of the page, as its JSON text.
struct ScriptObject {
  std::string json;
};

/// What a script answered or a page posted. `monostate` stands for null and undefined.
struct ScriptValue {
  std::variant<std::monostate, bool, double, std::string, ScriptArray, ScriptObject> value;
};

class WebView;

/// Hears of what happens in web views. Calls come on the main loop, never inside a call to the view, and never for a
/// view that has been destroyed.
class WebViewDelegate {
 public:
  virtual ~WebViewDelegate() = default;

  /// The page has loaded. Not called for a load that failed or was replaced by a newer one.
  virtual void webViewDidFinish(WebView& view) = 0;
  /// The page could not be loaded, and the view shows nothing. Not called for a load that was replaced by a newer one.
  virtual void webViewDidFail(WebView& view, const Error& error) = 0;
  /// The process that ran the page has gone: it crashed, ran out of memory, or had locked up for good and was ended.
  /// The view shows nothing until it is told to load again.
  virtual void webViewProcessDidTerminate(WebView& view) = 0;
  /// The page posted `body` to the message handler that the view was made with.
  virtual void webViewDidReceiveMessage(WebView& view, const ScriptValue& body) = 0;
};

/// A web page in a rectangle. Main thread only.
///
/// The page may read the files of the folder that it was loaded from, and web addresses; no other file, by whatever
/// means. Media start without a user's gesture and never keep the machine awake or turn up in the desktop's media
/// controls. A page can open no window, dialog or download. A wallpaper is black until it draws something.
class WebView {
 public:
  using Answer = std::function<void(const Result<ScriptValue>& answer)>;

  virtual ~WebView() = default;

  /// Loads the file `page`, with read access to `folder` and all that it holds. Replaces a load that is under way.
  virtual void loadFile(const std::filesystem::path& page, const std::filesystem::path& folder) = 0;

  /// Loads again what was loaded last, also when the page process has gone.
  virtual void reload() = 0;

  /// Runs `script` in the page, without the rights that a user's gesture would give it, and hands on what it answers.
  /// `answer` may be empty. It is called once on the main loop, with an error when the script threw or the page went
  /// away; never when the view is destroyed before that.
  virtual void evaluate(std::string_view script, Answer answer) = 0;

  /// Replaces the scripts that run before the page's own ones, in the top frame, in this order. In force from the next
  /// load on.
  virtual void setUserScripts(const std::vector<std::string>& scripts) = 0;
};

/// Makes web views. Main thread only.
class WebViews {
 public:
  virtual ~WebViews() = default;

  enum class Kind {
    wallpaper,
    /// A page of the program's own that the user reads. Until it draws, it has the colour of the desktop's windows. It
    /// can't go to another page: a link to the web that the user follows opens in the desktop's browser.
    document,
  };

  struct Settings {
    /// Size in logical pixels.
    double width = 0;
    double height = 0;
    /// The page posts to `window.webkit.messageHandlers.<messageHandler>`.
    std::string messageHandler;
    std::vector<std::string> userScripts;
    Kind kind = Kind::wallpaper;
  };

  /// `delegate` must outlive the view.
  virtual std::unique_ptr<WebView> make(const Settings& settings, WebViewDelegate& delegate) = 0;
};

}  // namespace tavelle
