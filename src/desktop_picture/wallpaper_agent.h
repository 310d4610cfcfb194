#pragma once

#include <filesystem>
#include <string>

#include "base/registration.h"
#include "desktop_picture/wallpaper_store.h"

namespace tavelle {

class Clock;
class DesktopPicture;
class Files;
class MainLoop;
class Screens;
class Spaces;
class UserDefaults;
struct Screen;
struct ShownImage;

/// What the agent needs from outside. The services outlive it.
struct AgentServices {
  Clock& clock;
  DesktopPicture& desktopPicture;
  Files& files;
  MainLoop& mainLoop;
  Screens& screens;
  Spaces& spaces;
  /// What it remembers from one run to the next.
  UserDefaults& memory;
  /// See `wallpaperStore`.
  std::filesystem::path store;
};

/// Sees to the wallpaper store: makes it, keeps an entry in it for every display and workspace there is, and brings its
/// pictures onto the screens. A picture that the user has chosen in any other way stays: a screen is touched
/// only when its entry is not the one that the agent last brought onto it, or when it shows nothing. A store that
/// cannot be read is left alone. Nothing fails towards the caller. Main thread only.
class WallpaperAgent {
 public:
  explicit WallpaperAgent(AgentServices services);
  WallpaperAgent(const WallpaperAgent&) = delete;
  WallpaperAgent& operator=(const WallpaperAgent&) = delete;
  ~WallpaperAgent() = default;

  /// Brings store and screens up to date, now and whenever screens or workspaces change.
  void start();

  /// Notes that somebody has just made the image at this address the picture of the screen of this name.
  void pictureWasSet(const std::string& imageAddress, const std::string& screen);

 private:
  void changed();
  void bringUpToDate();
  void apply(const ShownImage& wanted, const Screen& screen);

  const AgentServices services_;
  WallpaperStore store_;
  Registration screenObserver_;
  Registration spaceObserver_;
  Registration update_;
};

}  // namespace tavelle
