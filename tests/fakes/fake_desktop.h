#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/alerts.h"
#include "platform/application.h"
#include "platform/clock.h"
#include "platform/desktop_picture.h"
#include "platform/guide_window.h"
#include "platform/login_item.h"
#include "platform/open_panel.h"
#include "platform/processes.h"
#include "platform/screens.h"
#include "platform/shared_desktop.h"
#include "platform/status_item.h"
#include "platform/video_frames.h"
#include "platform/wallpaper_window.h"
#include "platform/web_view.h"
#include "platform/window_list.h"
#include "platform/workspace.h"

namespace tavelle {

/// Puts there what wants to be told, until the handle is dropped.
inline Registration listen(std::function<void()>& there, std::function<void()> tell) {
  there = std::move(tell);
  return Registration([&there] { there = nullptr; });
}

struct FakeClock final : Clock {
  WallTime now() const override { return time; }
  WallTime time{};
};

struct FakeAlerts final : Alerts {
  std::optional<std::size_t> run(const Alert& alert) override {
    shown.push_back(alert);
    return answer;
  }
  std::vector<Alert> shown;
  std::optional<std::size_t> answer = 0;
};

struct FakeOpenPanels final : OpenPanels {
  std::vector<std::filesystem::path> run(const OpenPanel& panel) override {
    shown.push_back(panel);
    return chosen;
  }
  std::vector<OpenPanel> shown;
  std::vector<std::filesystem::path> chosen;
};

struct FakeApplication final : Application {
  int run(ApplicationDelegate& /*delegate*/, const std::vector<std::string>& /*arguments*/) override { return 0; }
  void terminate() override {}
  void offer(Command) override {}
};

struct FakeWorkspace final : Workspace {
  void openFolder(const std::filesystem::path& folder) override { opened.push_back(folder); }
  Registration onEvent(std::function<void()> tell) override { return listen(happened, std::move(tell)); }
  std::vector<std::filesystem::path> opened;
  std::function<void()> happened;
};

struct FakeLoginItem final : LoginItem {
  LoginItemStatus status() const override { return now; }
  Result<void> registerApplication() override { return change(whenRegistered); }
  Result<void> unregister() override { return change(LoginItemStatus::notRegistered); }
  Result<void> change(LoginItemStatus to) {
    if (trouble) return Error{*trouble};
    now = to;
    return {};
  }
  LoginItemStatus now = LoginItemStatus::notRegistered;
  LoginItemStatus whenRegistered = LoginItemStatus::enabled;
  std::optional<std::string> trouble;
};

struct FakeScreens final : Screens {
  std::vector<Screen> list() const override { return screens; }
  Registration onChange(std::function<void()> tell) override { return listen(changed, std::move(tell)); }
  std::vector<Screen> screens;
  std::function<void()> changed = [] {};
};

struct FakeStatusItems final : StatusItems {
  struct Item final : StatusItem {
    explicit Item(const bool& open) : isOpen(open) {}
    void performClick() override {}
    bool isMenuOpen() const override { return isOpen; }
    const bool& isOpen;
  };
  std::unique_ptr<StatusItem> make(std::function<void(MenuItems&)> fill) override {
    menuNeedsUpdate = std::move(fill);
    return std::make_unique<Item>(isOpen);
  }
  std::function<void(MenuItems&)> menuNeedsUpdate;
  bool isOpen = false;
};

struct FakeProcesses final : Processes {
  Result<void> run(const std::filesystem::path& program, const std::vector<std::string>& arguments) override {
    ran.push_back(program.native());
    for (const auto& argument : arguments) ran.back() += " " + argument;
    if (onRun) onRun();
    return missing ? Result<void>(Error{"no such program"}) : Result<void>();
  }
  Result<Registration> start(const std::filesystem::path& /*program*/, std::function<void(Ending)> ended) override {
    if (missing) return Error{"no such program"};
    ended_ = std::move(ended);
    return Registration([this, number = ++started_] {
      if (number == started_) ended_ = nullptr;
    });
  }
  bool isRunning() const { return ended_ != nullptr; }
  /// Ends the one that was started last.
  void endChild(Ending ending) { std::exchange(ended_, nullptr)(ending); }

  /// Command lines.
  std::vector<std::string> ran;
  std::function<void()> onRun;
  bool missing = false;

 private:
  int started_ = 0;
  std::function<void(Ending)> ended_;
};

struct FakeSharedDesktop final : SharedDesktop {
  Registration onTrouble(std::function<void(const std::string&)> /*tell*/) override { return {}; }
};

struct FakeWindowList final : WindowList {
  std::optional<std::vector<WindowDescription>> onScreen() const override {
    ++fetches;
    return windows;
  }
  std::optional<std::vector<WindowDescription>> windows{std::in_place};
  mutable int fetches = 0;
};

/// Answers with what was asked for, as text.
struct FakeVideoFrames final : VideoFrames {
  Result<std::string> jpegOfFrame(const std::filesystem::path& video, std::chrono::milliseconds time) const override {
    if (undecodable == video) return Error{"not a video"};
    return video.native() + " at " + std::to_string(time.count()) + " ms";
  }
  std::filesystem::path undecodable;
};

struct FakeDesktopPicture final : DesktopPicture {
  Result<void> set(const std::filesystem::path& image, const Screen& screen) override {
    if (refusing == screen.name) return Error{"no"};
    pictures[screen.name] = image;
    return {};
  }
  std::optional<std::string> current(const Screen& screen) const override {
    const auto found = pictures.find(screen.name);
    return found == pictures.end() ? std::nullopt : std::optional(found->second.native());
  }
  std::map<std::string, std::filesystem::path> pictures;
  std::string refusing = "none";
};

/// A page that remembers what it was told, and answers scripts when the test says so.
struct FakeWebView final : WebView {
  FakeWebView(const WebViews::Settings& made, WebViewDelegate& heard) : settings(made), delegate(heard) {}
  void loadFile(const std::filesystem::path& page, const std::filesystem::path& /*readable*/) override {
    loaded.push_back(page);
  }
  void reload() override { ++reloads; }
  void evaluate(std::string_view script, Answer answer) override {
    scripts.emplace_back(script);
    answers.push_back(std::move(answer));
  }
  void setUserScripts(const std::vector<std::string>& scriptTexts) override { settings.userScripts = scriptTexts; }

  /// Answers the last script.
  void answer(const Result<ScriptValue>& value) const { answers.back()(value); }

  WebViews::Settings settings;
  WebViewDelegate& delegate;
  std::vector<std::filesystem::path> loaded;
  int reloads = 0;
  std::vector<std::string> scripts;
  std::vector<Answer> answers;
};

struct FakeWindow final : WallpaperWindow {
  void setContent(WebView& /*content*/) override {}
  void orderFront() override { visible = true; }
  void orderOut() override { visible = false; }
  bool isVisible() const override { return visible; }

  bool visible = false;
};

struct FakeWebViews final : WebViews {
  std::unique_ptr<WebView> make(const Settings& settings, WebViewDelegate& delegate) override {
    auto view = std::make_unique<FakeWebView>(settings, delegate);
    made.push_back(view.get());
    return view;
  }
  /// All that were ever made; the last ones are those in use.
  std::vector<FakeWebView*> made;
};

struct FakeWindows final : WallpaperWindows {
  std::unique_ptr<WallpaperWindow> make(const Screen& /*screen*/) override {
    auto window = std::make_unique<FakeWindow>();
    made.push_back(window.get());
    return window;
  }
  std::vector<FakeWindow*> made;
};

/// A window that counts how often it was brought to the front.
struct FakeGuideWindow final : GuideWindow {
  explicit FakeGuideWindow(GuideWindowDelegate& heard) : delegate(heard) {}
  void show() override { ++shown; }
  bool isVisible() const override { return shown > 0; }
  void performClose() override { delegate.guideWindowWillClose(*this); }

  GuideWindowDelegate& delegate;
  int shown = 0;
};

struct FakeGuideWindows final : GuideWindows {
  std::unique_ptr<GuideWindow> make(const Settings& /*settings*/, WebView& /*content*/,
                                    GuideWindowDelegate& delegate) override {
    auto window = std::make_unique<FakeGuideWindow>(delegate);
    made.push_back(window.get());
    return window;
  }
  std::vector<FakeGuideWindow*> made;
};

}  // namespace tavelle
