#include <gtkmm/main.h>
#include <gtkmm/window.h>

#include "platform/linux/desktop/announced_picture.h"
#include "platform/linux/desktop/gdk_screens.h"
#include "platform/linux/desktop/gtk_alerts.h"
#include "platform/linux/desktop/gtk_application.h"
#include "platform/linux/desktop/gtk_guide_window.h"
#include "platform/linux/desktop/gtk_open_panels.h"
#include "platform/linux/desktop/gtk_status_items.h"
#include "platform/linux/desktop/icon_names.h"
#include "platform/linux/desktop/linux_workspace.h"
#include "platform/linux/desktop/webkit_web_views.h"
#include "platform/linux/desktop/x11_wallpaper_window.h"
#include "platform/linux/desktop/x11_window_list.h"
#include "platform/linux/desktop_services.h"
#include "platform/linux/standard_paths.h"

namespace tavelle {
namespace {

class GtkDesktopServices final : public DesktopServices {
 public:
  // The command line needs neither the application nor the web engine, so both are made when they are asked for.
  Application& application() override {
    if (!application_) {
      application_ = std::make_unique<GtkApplication>("org.tavelle.Tavelle", [this] { openPanels_.cancel(); });
    }
    return *application_;
  }
  WebViews& webViews() override {
    if (!webViews_) webViews_ = std::make_unique<WebKitWebViews>();
    return *webViews_;
  }
  Alerts& alerts() override { return alerts_; }
  DesktopPicture& desktopPicture() override { return desktopPicture_; }
  OpenPanels& openPanels() override { return openPanels_; }
  GuideWindows& guideWindows() override { return guideWindows_; }
  Screens& screens() override { return screens_; }
  StatusItems& statusItems() override { return statusItems_; }
  WallpaperWindows& windows() override { return windows_; }
  WindowList& windowList() override { return windowList_; }
  Workspace& workspace() override { return workspace_; }

 private:
  const XConnection connection_;
  std::unique_ptr<GtkApplication> application_;
  GtkAlerts alerts_;
  GtkOpenPanels openPanels_;
  GtkStatusItems statusItems_{resourceFolder()};
  GdkScreens screens_{connection_};
  X11WindowList windowList_{connection_};
  LinuxWorkspace workspace_;
  AnnouncedPicture desktopPicture_{connection_};
  GtkGuideWindows guideWindows_;
  X11WallpaperWindows windows_;
  std::unique_ptr<WebKitWebViews> webViews_;
};

}  // namespace
}  // namespace tavelle

extern "C" [[gnu::visibility("default")]] tavelle::Result<std::unique_ptr<tavelle::DesktopServices>>
tavelleOpenDesktop();

tavelle::Result<std::unique_ptr<tavelle::DesktopServices>> tavelleOpenDesktop() {
  g_set_prgname("tavelle");
  g_set_application_name("Tavelle");
  gdk_set_allowed_backends("x11");
  if (!gtk_init_check(nullptr, nullptr)) return tavelle::Error{"couldn't connect to an X11 display"};
  Gtk::Main::init_gtkmm_internals();
  Gtk::Window::set_default_icon_name(tavelle::iconName);
  return std::unique_ptr<tavelle::DesktopServices>(std::make_unique<tavelle::GtkDesktopServices>());
}
