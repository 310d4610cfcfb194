#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include "app/command_line.h"
#include "app/commands.h"
#include "app/controller.h"
#include "coverage/coverage_report.h"
#include "desktop_picture/wallpaper_store.h"
#include "platform/application.h"
#include "platform/linux/child_processes.h"
#include "platform/linux/desktop_services.h"
#include "platform/linux/glib_main_loop.h"
#include "platform/linux/icu_text_order.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/plist_defaults.h"
#include "platform/linux/standard_paths.h"
#include "platform/linux/system_clock.h"

namespace {

using namespace tavelle;

int runSetStill(const std::filesystem::path& image) {
  // A machine without a display has no screen to set, which is no failure.
  if (!hasDisplay()) {
    std::cout << "desktop picture set\n";
    return 0;
  }
  const auto desktop = openDesktop();
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
  std::error_code code;
  const auto still = std::filesystem::absolute(image, code).lexically_normal();
  const bool updated = syncAllSpaces(still, services, [](const std::string& message) { std::cout << message << '\n'; });
  std::cout << (updated ? "updated\n" : "already the same everywhere\n");
  return 0;
}

int runCoverage() {
  // Where there is no screen to ask about there is nothing to tell, and no failure.
  if (!hasDisplay()) return 0;
  if (const auto desktop = openDesktop()) {
    reportCoverage((*desktop)->screens(), (*desktop)->windowList(), getpid(), std::cout);
  }
  return 0;
}

int runMode(Mode mode, const std::vector<std::string>& arguments) {
  switch (mode) {
    case Mode::setStill:
      return runSetStill(arguments[1]);
    case Mode::syncSpaces:
      return runSyncSpaces(arguments[1]);
    case Mode::coverage:
      return runCoverage();
  }
  return 1;
}

int runApplication() {
  const auto desktop = openDesktop();
  if (!desktop) {
    std::cerr << "tavelle: " << desktop.error().description << '\n';
    return 1;
  }
  ChildProcesses processes;
  GLibMainLoop mainLoop;
  IcuTextOrder textOrder;
  LinuxFiles files;
  PlistDefaults defaults(defaultsFile());
  SystemClock clock;
  const auto home = homeFolder();
  // Where the event log lies. Other systems have this folder from the start.
  static_cast<void>(files.createFolders(home / "Library/Logs"));

  Application& application = (*desktop)->application();
  const Platform platform{.application = application,
                          .clock = clock,
                          .desktopPicture = (*desktop)->desktopPicture(),
                          .files = files,
                          .mainLoop = mainLoop,
                          .processes = processes,
                          .screens = (*desktop)->screens(),
                          .textOrder = textOrder,
                          .defaults = defaults,
                          .windows = (*desktop)->windows(),
                          .webViews = (*desktop)->webViews(),
                          .windowList = (*desktop)->windowList(),
                          .workspace = (*desktop)->workspace(),
                          .processId = getpid(),
                          .home = home,
                          .agent = privateLibraryFolder() / "WallpaperAgent",
                          .resources = resourceFolder()};
  Controller controller(platform);
  offerCommands(platform, controller);
  return application.run(controller);
}

}  // namespace

int main(int count, char** values) {
  const std::vector<std::string> arguments(values + 1, values + count);
  const auto mode = commandLineMode(arguments);
  return mode ? runMode(*mode, arguments) : runApplication();
}
