#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "app/command_line.h"
#include "app/commands.h"
#include "coverage/coverage.h"
#include "desktop_picture/wallpaper_store.h"
#include "library/deletion.h"
#include "menu/menu_preview.h"
#include "model/controller.h"
#include "platform/application.h"
#include "platform/canvas.h"
#include "platform/files.h"
#include "platform/linux/autostart_entry.h"
#include "platform/linux/child_processes.h"
#include "platform/linux/child_video_frames.h"
#include "platform/linux/glib_main_loop.h"
#include "platform/linux/icu_text_order.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/mime_file_types.h"
#include "platform/linux/modules.h"
#include "platform/linux/plist_defaults.h"
#include "platform/linux/standard_paths.h"
#include "platform/linux/system_clock.h"

namespace {

using namespace tavelle;

/// The desktop; without a display one that has no screens, which is no failure.
Result<std::unique_ptr<DesktopServices>> desktopIfAny() { return hasDisplay() ? openDesktop() : noDesktop(); }

int runSetStill(const std::filesystem::path& image) {
  const auto desktop = desktopIfAny();
  if (!desktop) {
    std::cerr << "failed: " << desktop.error().description << '\n';
    std::cout << "desktop picture failed\n";
    return 1;
  }
  return setStill(image, (*desktop)->screens(), (*desktop)->desktopPicture(), std::cout, std::cerr);
}

int runSyncSpaces(const std::filesystem::path& image) {
  ChildProcesses processes;
  LinuxFiles files;
  SystemClock clock;
  const StoreServices services{clock, files, processes, wallpaperStore(homeFolder())};
  const auto print = [](const std::string& message) { std::cout << message << '\n'; };
  std::error_code code;
  // An absolute path is taken as it is: what follows a link can be somewhere else than it looks.
  const auto still = image.is_absolute() ? image : std::filesystem::absolute(image, code).lexically_normal();
  // An empty path, or one below a working directory that is gone. The store would name a picture that is none.
  if (code) print("desktops: couldn't tell which image is meant: " + code.message());
  const bool updated = !code && syncAllSpaces(still, services, print);
  std::cout << (updated ? "updated\n" : "already the same everywhere\n");
  return 0;
}

int runCoverage() {
  // A display that cannot be reached has no screen to tell about, either.
  if (const auto desktop = desktopIfAny()) {
    reportCoverage((*desktop)->screens(), (*desktop)->windowList(), getpid(), std::cout);
  }
  return 0;
}

/// All services, those that need no display beside those of a desktop.
class Services {
 public:
  explicit Services(DesktopServices& desktop) : desktop_(desktop) {}

  Platform platform() {
    return {.alerts = desktop_.alerts(),
            .application = desktop_.application(),
            .clock = clock_,
            .desktopPicture = desktop_.desktopPicture(),
            .files = files_,
            .fileTypes = fileTypes_,
            .guideWindows = desktop_.guideWindows(),
            .loginItem = loginItem_,
            .mainLoop = mainLoop_,
            .openPanels = desktop_.openPanels(),
            .processes = processes_,
            .screens = desktop_.screens(),
            .sharedDesktop = desktop_.sharedDesktop(),
            .statusItems = desktop_.statusItems(),
            .textOrder = textOrder_,
            .defaults = defaults_,
            .videoFrames = videoFrames_,
            .windows = desktop_.windows(),
            .webViews = desktop_.webViews(),
            .windowList = desktop_.windowList(),
            .workspace = desktop_.workspace(),
            .processId = getpid(),
            .home = homeFolder(),
            .agent = privateLibraryFolder() / "WallpaperAgent",
            .resources = resourceFolder()};
  }

 private:
  DesktopServices& desktop_;
  ChildProcesses processes_;
  GLibMainLoop mainLoop_;
  IcuTextOrder textOrder_;
  LinuxFiles files_;
  MimeFileTypes fileTypes_;
  AutostartEntry loginItem_{autostartFolders(), executableFile()};
  PlistDefaults defaults_{defaultsFile()};
  ChildVideoFrames videoFrames_{privateLibraryFolder() / "video-frame"};
  SystemClock clock_;
};

int runDelete(const std::string& name) {
  auto opened = desktopIfAny();
  const auto desktop = opened ? std::move(opened).value() : noDesktop();
  Services services(*desktop);
  const Platform platform = services.platform();
  Controller controller(platform);
  return deleteNamed(controller, name, platform.textOrder, std::cout);
}

int runPreviewMenu(const std::filesystem::path& folder, std::size_t samples) {
  const auto drawing = openDrawing();
  if (!drawing) {
    std::cerr << "failed: " << drawing.error().description << '\n';
    return 0;
  }
  const auto desktop = noDesktop();
  Services services(*desktop);
  const Platform platform = services.platform();
  Controller controller(platform);
  std::error_code code;
  previewMenu(controller, platform, **drawing, std::filesystem::absolute(folder, code), samples, std::cout);
  return 0;
}

int runMode(Mode mode, const std::vector<std::string>& arguments) {
  switch (mode) {
    case Mode::setStill:
      return runSetStill(arguments[1]);
    case Mode::deleteWallpaper:
      return runDelete(arguments[1]);
    case Mode::syncSpaces:
      return runSyncSpaces(arguments[1]);
    case Mode::coverage:
      return runCoverage();
    case Mode::previewMenu:
      return runPreviewMenu(arguments[1], arguments.size() > 2 ? sampleCount(arguments[2]) : 0);
  }
  return 1;
}

int runApplication(const std::vector<std::string>& arguments) {
  const auto desktop = openDesktop();
  if (!desktop) {
    std::cerr << "tavelle: " << desktop.error().description << '\n';
    return 1;
  }
  Services services(**desktop);
  const Platform platform = services.platform();
  // For the event log, which makes no folders. Nothing else on a Linux desktop makes this one.
  static_cast<void>(platform.files.createFolders(platform.home / "Library/Logs"));
  Controller controller(platform);
  offerCommands(platform, controller);
  return platform.application.run(controller, arguments);
}

}  // namespace

int main(int count, char** values) {
  const std::vector<std::string> arguments(values + 1, values + count);
  const auto mode = commandLineMode(arguments);
  return mode ? runMode(*mode, arguments) : runApplication(arguments);
}
