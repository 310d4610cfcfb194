#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "fakes/fake_defaults.h"
#include "fakes/fake_desktop.h"
#include "fakes/fake_files.h"
#include "fakes/fake_main_loop.h"
#include "platform/linux/icu_text_order.h"
#include "platform/linux/mime_file_types.h"
#include "platform/platform.h"

namespace tavelle {

using Lines = std::vector<std::string>;

/// A whole desktop in memory: two screens side by side, a home folder, packaged resources, a user who has seen the
/// tutorial. Only the order of names and the types of files are the real ones.
struct FakePlatform {
  FakePlatform() {
    screens.screens = {{"left", {0, 0, 1920, 1080}, {0, 0, 1920, 1080}, {0, 0, 1920, 1080}},
                       {"right", {1920, 56, 1280, 1024}, {1920, 56, 1280, 1024}, {1920, 0, 1280, 1024}}};
    files.put("/home/Library/Logs/Tavelle.log");
    static_cast<void>(files.createFolders("/share"));
    defaults.set("guideShown", true);
  }

  operator Platform() {
    return {.alerts = alerts,
            .application = application,
            .clock = clock,
            .desktopPicture = desktopPicture,
            .files = files,
            .fileTypes = fileTypes,
            .guideWindows = guideWindows,
            .loginItem = loginItem,
            .mainLoop = mainLoop,
            .openPanels = openPanels,
            .processes = processes,
            .screens = screens,
            .sharedDesktop = sharedDesktop,
            .statusItems = statusItems,
            .textOrder = textOrder,
            .defaults = defaults,
            .videoFrames = videoFrames,
            .windows = windows,
            .webViews = webViews,
            .windowList = windowList,
            .workspace = workspace,
            .processId = 77,
            .home = "/home",
            .agent = "/lib/WallpaperAgent",
            .resources = "/share"};
  }

  /// The event log's lines without their times.
  Lines log() const {
    Lines messages;
    std::istringstream lines(files.content("/home/Library/Logs/Tavelle.log").value_or(""));
    for (std::string line; std::getline(lines, line);) messages.push_back(line.substr(26));
    return messages;
  }

  /// Puts a wallpaper into the library.
  void addWallpaper(const std::string& name) { files.put("/home/Pictures/Wallpapers/" + name + "/index.html"); }

  FakeAlerts alerts;
  FakeApplication application;
  FakeClock clock;
  FakeDesktopPicture desktopPicture;
  FakeFiles files;
  MimeFileTypes fileTypes;
  FakeGuideWindows guideWindows;
  FakeLoginItem loginItem;
  FakeMainLoop mainLoop;
  FakeOpenPanels openPanels;
  FakeProcesses processes;
  FakeScreens screens;
  FakeSharedDesktop sharedDesktop;
  FakeStatusItems statusItems;
  IcuTextOrder textOrder;
  FakeDefaults defaults;
  FakeVideoFrames videoFrames;
  FakeWindows windows;
  FakeWebViews webViews;
  FakeWindowList windowList;
  FakeWorkspace workspace;
};

}  // namespace tavelle
