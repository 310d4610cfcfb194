#include <gtkmm/window.h>

#include <utility>

#include "platform/linux/display/connect_to_display.h"
#include "platform/linux/menu/gtk_status_items.h"
#include "platform/linux/menu/program_icon.h"
#include "platform/linux/modules.h"
#include "platform/linux/picture/announced_picture.h"
#include "platform/linux/picture/linux_desktop_picture.h"
#include "platform/linux/standard_paths.h"
#include "platform/linux/toolkit/gtk_alerts.h"
#include "platform/linux/toolkit/gtk_application.h"
#include "platform/linux/toolkit/gtk_guide_window.h"
#include "platform/linux/toolkit/gtk_open_panels.h"
#include "platform/linux/toolkit/linux_workspace.h"
#include "platform/linux/toolkit/window_manager.h"
#include "platform/linux/web/webkit_web_views.h"

namespace tavelle {
namespace {

class GtkDesktopServices final : public DesktopServices {
 public:
  explicit GtkDesktopServices(std::unique_ptr<DisplayServer> server) : server_(std::move(server)) {}

  // The command line needs neither the application nor the web engine, so both are made when they are asked for.
  Application& application() override {
    if (!application_) {
      application_ = std::make_unique<GtkApplication>("org.tavelle.Tavelle", [this] {
        openPanels_.end();
        alerts_.end();
      });
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
  Screens& screens() override { return server_->screens(); }
  SharedDesktop& sharedDesktop() override { return server_->sharedDesktop(); }
  StatusItems& statusItems() override { return statusItems_; }
  WallpaperWindows& windows() override { return server_->windows(); }
  WindowList& windowList() override { return server_->windowManager(); }
  Workspace& workspace() override { return workspace_; }

 private:
  const std::unique_ptr<DisplayServer> server_;
  std::unique_ptr<GtkApplication> application_;
  GtkAlerts alerts_;
  GtkOpenPanels openPanels_;
  GtkStatusItems statusItems_{iconFolder(), server_->monitors()};
  LinuxWorkspace workspace_{server_->windowManager()};
  LinuxDesktopPicture picture_{server_->monitors(), server_->xConnection()};
  AnnouncedPicture desktopPicture_{picture_};
  GtkGuideWindows guideWindows_;
  std::unique_ptr<WebKitWebViews> webViews_;
};

}  // namespace
}  // namespace tavelle

extern "C" [[gnu::visibility("default")]] tavelle::Result<std::unique_ptr<tavelle::DesktopServices>>
tavelleOpenDesktop();

tavelle::Result<std::unique_ptr<tavelle::DesktopServices>> tavelleOpenDesktop() {
  auto server = tavelle::connectToDisplay("tavelle");
  if (!server) return server.error();
  g_set_application_name("Tavelle");
  Gtk::Window::set_default_icon_name(tavelle::iconName);
  return std::unique_ptr<tavelle::DesktopServices>(
      std::make_unique<tavelle::GtkDesktopServices>(std::move(server).value()));
}
