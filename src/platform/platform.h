#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace tavelle {

class Alerts;
class Application;
class Clock;
class DesktopPicture;
class FileTypes;
class Files;
class GuideWindows;
class LoginItem;
class MainLoop;
class OpenPanels;
class Processes;
class Screens;
class SharedDesktop;
class StatusItems;
class TextOrder;
class UserDefaults;
class VideoFrames;
class WallpaperWindows;
class WebViews;
class WindowList;
class Workspace;

/// All that the program needs from outside its process. The services outlive everything that is handed this.
struct Platform {
  Alerts& alerts;
  Application& application;
  Clock& clock;
  DesktopPicture& desktopPicture;
  Files& files;
  FileTypes& fileTypes;
  GuideWindows& guideWindows;
  LoginItem& loginItem;
  MainLoop& mainLoop;
  OpenPanels& openPanels;
  Processes& processes;
  Screens& screens;
  SharedDesktop& sharedDesktop;
  StatusItems& statusItems;
  TextOrder& textOrder;
  UserDefaults& defaults;
  VideoFrames& videoFrames;
  WallpaperWindows& windows;
  WebViews& webViews;
  WindowList& windowList;
  Workspace& workspace;

  /// This process.
  std::int32_t processId;
  /// The user's home folder.
  std::filesystem::path home;
  /// The program that keeps the wallpaper store and brings its pictures onto the screens.
  std::filesystem::path agent;
  /// The folder of the files that come with the program; none when it cannot be found.
  std::optional<std::filesystem::path> resources;
};

}  // namespace tavelle
