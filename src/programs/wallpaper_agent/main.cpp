#include <malloc.h>
#include <sys/prctl.h>

#include <csignal>
#include <functional>
#include <string>

#include "desktop_picture/wallpaper_agent.h"
#include "desktop_picture/wallpaper_store.h"
#include "platform/linux/display/connect_to_display.h"
#include "platform/linux/glib_main_loop.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/picture/announced_picture.h"
#include "platform/linux/picture/linux_desktop_picture.h"
#include "platform/linux/plist_defaults.h"
#include "platform/linux/standard_paths.h"
#include "platform/linux/system_clock.h"
#include "platform/linux/toolkit/gtk_application.h"

namespace {

using namespace tavelle;

class AgentStarter final : public ApplicationDelegate {
 public:
  explicit AgentStarter(WallpaperAgent& agent) : agent_(agent) {}
  void applicationDidFinishLaunching() override { agent_.start(); }
  void applicationShouldHandleReopen() override {}

 private:
  WallpaperAgent& agent_;
};

int runAgent(DisplayServer& server) {
  SystemClock clock;
  LinuxFiles files;
  GLibMainLoop mainLoop;
  PlistDefaults memory(agentMemoryFile());
  LinuxDesktopPicture picture(server.monitors(), server.xConnection());
  WallpaperAgent agent({.clock = clock,
                        .desktopPicture = picture,
                        .files = files,
                        .mainLoop = mainLoop,
                        .screens = server.screens(),
                        .spaces = server.spaces(),
                        .memory = memory,
                        .store = wallpaperStore(homeFolder())});
  tavelle::GtkApplication application(agentName);
  application.offer({pictureSetAction, std::function<void(const std::string&)>([&](const std::string& announcement) {
                       const auto space = announcement.find(' ');
                       if (space == std::string::npos) return;
                       agent.pictureWasSet(announcement.substr(0, space), announcement.substr(space + 1));
                     })});
  AgentStarter starter(agent);
  return application.run(starter, {});
}

}  // namespace

int main() {
  // Whatever becomes of the application, its agent does not stay behind.
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  // Otherwise the memory of a decoded picture stays with a process that rests all day.
  mallopt(M_MMAP_THRESHOLD, 1 << 20);
  const auto server = tavelle::connectToDisplay("WallpaperAgent");
  return server ? runAgent(**server) : 1;
}
