#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/registration.h"
#include "model/wallpaper.h"
#include "platform/application.h"
#include "platform/pending_calls.h"
#include "platform/platform.h"
#include "platform/web_view.h"

namespace tavelle {

class AgentKeeper;
class Guide;
class StatusItem;
class WallpaperListView;
class WallpaperWindow;
struct FrameSettings;
struct MenuItem;
using MenuItems = std::vector<MenuItem>;
struct Screen;

/// The one owner of the running application's state. Its operations are what the program can do; each stands in the
/// folder of its subsystem, which the headings below name. Main thread only. No operation fails towards its caller:
/// what is worth knowing becomes a line of the event log.
class Controller final : public ApplicationDelegate, public WebViewDelegate {
 public:
  /// Touches no file and shows nothing, so that the command line can use a controller just to reach the library.
  explicit Controller(const Platform& platform);
  Controller(const Controller&) = delete;
  Controller& operator=(const Controller&) = delete;
  ~Controller() override;

  // --- Application (app/)

  /// Brings everything up; see launch.cpp.
  void applicationDidFinishLaunching() override;
  /// Shows the tutorial from its beginning.
  void applicationShouldHandleReopen() override;
  /// Appends one line to the event log: "2025-03-14 09:26:53 +0000 message", the time in UTC whatever the locale. A
  /// message that is not UTF-8 is lost, and so is a line that cannot be written.
  void log(const std::string& message);
  void quit();

  // --- Library (library/)

  /// "Pictures/Wallpapers" in the home folder. It may not exist.
  const std::filesystem::path& library() const { return library_; }
  /// The library in the order in which a file browser shows names. Read afresh at every call.
  std::vector<Wallpaper> wallpapers() const;
  /// Puts the wallpaper at the head of the recent ones.
  void remember(const Wallpaper& wallpaper);
  /// The at most three of `all` that the user most likely wants: the one on show, the recent ones, the newest ones.
  std::vector<Wallpaper> quickList(const std::vector<Wallpaper>& all) const;
  /// Takes that one of `all` for the one on show that was last chosen, without showing it; none when it is not there.
  void takeStoredWallpaper(const std::vector<Wallpaper>& all);
  /// The same, but the first of `all` when it is not there.
  void takeStoredOrFirst(const std::vector<Wallpaper>& all);
  /// Copies each sample wallpaper into the library that was never copied before, whether or not the library is empty.
  void seedLibraryIfEmpty();
  /// Lets the user choose files, makes a wallpaper of each, and shows the last one.
  void addWallpaper();
  /// Makes a wallpaper of a video, an image or a web page: a new folder of the library with a copy of the file. None
  /// when that fails, which is told to the user; what is there by then stays, and is no wallpaper.
  std::optional<Wallpaper> importWallpaper(const std::filesystem::path& from);
  /// Writes one frame of the video `from`, half a second into it, as the JPEG file `to`, in place of what was there. A
  /// video that gives no frame leaves a line in the event log and `to` as it was.
  void makeStill(const std::filesystem::path& from, const std::filesystem::path& to);
  /// Moves the wallpaper to the trash, when the user confirms.
  void deleteWallpaper(const Wallpaper& wallpaper);
  /// Moves the wallpaper to the trash and shows another one in its place when it was on show. A failure is told to the
  /// user. Whether it was moved.
  bool trash(const Wallpaper& wallpaper);
  /// Opens the library folder in the file browser.
  void showFolder();

  // --- Playback (playback/)

  /// The wallpaper on show.
  const std::optional<Wallpaper>& current() const { return current_; }
  /// Makes `wallpaper` the one on show on every screen, now and at the next launch.
  void show(const Wallpaper& wallpaper);
  /// Shows the wallpaper that the user most likely wants now that the one on show has gone; with none left the plain
  /// desktop.
  void showAnother();
  /// Replaces all wallpaper windows and their pages by new ones, one for each screen there is.
  void buildWindows();
  /// Brings the page at `index` to what the pause switch and the screen's covered flag ask for.
  void applyPlayState(std::size_t index);
  void togglePause();
  bool paused() const { return paused_; }
  /// The settings in force: what is stored, where it is in range, else full rate and full resolution.
  FrameSettings frameSettings() const;
  void chooseFrameRate(std::int64_t framesPerSecond);
  void chooseResolution(double scale);

  // --- Coverage (coverage/)

  /// From now on pauses the page of each screen whose desktop other windows hide, and plays it when they no longer do.
  void startCoverageWatch();
  /// Looks once at what hides the desktops, and acts on what has changed since the last look.
  void checkCoverage();
  /// Looks now and again when the windows have come to rest.
  void coverageEvent();

  // --- Desktop picture (desktop_picture/)

  /// Syncs the wallpaper store to the still image after `delay` (see `syncAllSpaces`), and again two seconds after a
  /// pass that had to change it, at most `retries` times: whoever else writes the store may have put its own state back
  /// meanwhile. A request that still waits is replaced.
  void scheduleSpacesSync(const std::filesystem::path& still,
                          std::chrono::milliseconds delay = std::chrono::milliseconds(1500), int retries = 1);

  // --- Menu (menu/)

  /// Puts the icon into the panel.
  void createStatusItem();
  /// Fills the icon's menu from how things are now.
  void menuNeedsUpdate(MenuItems& menu);
  /// A fresh list of the wallpapers for the menu, made of `all`, the library in its order. Choosing one shows it.
  std::shared_ptr<WallpaperListView> listView(const std::vector<Wallpaper>& all, bool expanded);
  /// Opens the icon's menu as a click on it would, on the main loop's next turn.
  void openMenu();
  /// Has the application started at login, or no longer started. A failure is told to the user.
  void toggleLogin();

  // --- Guide (guide/)

  /// Shows the tutorial from its beginning.
  void showGuide();

 private:
  // --- Application (app/)

  void restoreWallpaper();
  void syncSpacesAtLaunch();
  /// Goes on hearing what this observer stands for until the program ends.
  void keep(Registration observer);

  // --- Library (library/)

  void forget(const std::string& name);

  // --- Playback (playback/)

  /// What one screen has, for as long as the windows are not built anew.
  struct ShownScreen {
    WallpaperWindow& window;
    /// Shared so that a delayed look at a page can tell that it has gone; nobody else keeps one.
    const std::shared_ptr<WebView>& webView;
    bool covered;
  };

  /// The screens that the windows were last built for; those that are connected may differ until they are rebuilt.
  std::size_t shownScreens() const;
  /// What the screen at `index` has, which is less than `shownScreens()`.
  ShownScreen shownScreen(std::size_t index) const;
  /// The index of the screen whose page this is; none when its window has been replaced.
  std::optional<std::size_t> screenOf(const WebView& view) const;
  /// Whether the page at `index` is to pause. One that isn't there is not covered.
  bool shouldRest(std::size_t index) const;
  void setCovered(std::size_t index, bool covered);
  void buildWindow(const Screen& screen);
  /// Two calls give the same text exactly when the screens are the same in number, order and frames.
  std::string currentSignature() const;
  void screensChanged();
  void rebuildIfNeeded();
  void load(WebView& view);
  void webViewDidFinish(WebView& view) override;
  void webViewDidFail(WebView& view, const Error& error) override;
  void webViewProcessDidTerminate(WebView& view) override;
  void webViewDidReceiveMessage(WebView& view, const ScriptValue& body) override;
  void applyFrameSettings();
  void measureFrameRate();

  // --- Desktop picture (desktop_picture/)

  void startAgent();

  // --- Menu (menu/)

  MenuItems deleteMenu(const std::vector<Wallpaper>& all);
  MenuItems frameRateMenu();
  MenuItems resolutionMenu();

  // --- Guide (guide/)

  void showGuideAtFirstLaunch();

  /// The services.
  const Platform platform_;

  const std::filesystem::path library_;
  const std::filesystem::path logURL_;
  std::optional<Wallpaper> current_;
  // These two and `covered_` have the same indices; only playback/windows.cpp touches them, which keeps them in step.
  std::vector<std::unique_ptr<WallpaperWindow>> windows_;
  std::vector<std::shared_ptr<WebView>> webViews_;
  std::unique_ptr<StatusItem> statusItem_;
  bool paused_ = false;
  std::vector<bool> covered_;
  Registration coverageTimer_;
  /// The screens that the windows were last built for.
  std::string screenSignature_;
  /// Made when it is first needed.
  std::unique_ptr<Guide> guide_;
  Registration spacesSyncWork_;

  // Each of these three is one file's own: app/launch.cpp, playback/windows.cpp, desktop_picture/agent_keeper.cpp.
  std::vector<Registration> observers_;
  Registration rebuildRequest_;
  std::unique_ptr<AgentKeeper> agentKeeper_;
  /// Last, so that none of these comes while the rest goes.
  PendingCalls pending_;
};

}  // namespace tavelle
