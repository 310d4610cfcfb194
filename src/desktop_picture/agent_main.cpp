#include <gtk/gtk.h>
#include <gtkmm/main.h>
#include <malloc.h>
#include <sys/prctl.h>

#include <csignal>
#include <string>

#include "desktop_picture/wallpaper_agent.h"
#include "desktop_picture/wallpaper_store.h"
#include "platform/linux/desktop/announced_picture.h"
#include "platform/linux/desktop/gdk_screens.h"
#include "platform/linux/desktop/gtk_application.h"
#include "platform/linux/desktop/x11_spaces.h"
#include "platform/linux/glib_main_loop.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/plist_defaults.h"
#include "platform/linux/standard_paths.h"
#include "platform/linux/system_clock.h"

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

int runAgent() {
  SystemClock clock;
  LinuxFiles files;
  GLibMainLoop mainLoop;
  PlistDefaults memory(agentMemoryFile());
  const XConnection connection;
  LinuxDesktopPicture picture(connection);
  GdkScreens screens(connection);
  X11Spaces spaces(connection);
  WallpaperAgent agent({.clock = clock,
                        .desktopPicture = picture,
                        .files = files,
                        .mainLoop = mainLoop,
                        .screens = screens,
                        .spaces = spaces,
                        .memory = memory,
                        .store = wallpaperStore(homeFolder())});
  tavelle::GtkApplication application(agentName);
  application.offer({pictureSetAction, std::function<void(const std::string&)>([&](const std::string& announcement) {
                       const auto space = announcement.find(' ');
                       if (space == std::string::npos) return;
                       agent.pictureWasSet(announcement.substr(0, space), announcement.substr(space + 1));
                     })});
  AgentStarter starter(agent);
  return application.run(starter);
}

}  // namespace

int main() {
  // Whatever becomes of the application, its agent does not stay behind.
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  // Otherwise the memory of a decoded picture stays with a process that rests all day.
  mallopt(M_MMAP_THRESHOLD, 1 << 20);
  g_set_prgname("WallpaperAgent");
  gdk_set_allowed_backends("x11");
  if (!gtk_init_check(nullptr, nullptr)) return 1;
  Gtk::Main::init_gtkmm_internals();
  return runAgent();
}
