#include "platform/linux/modules.h"

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>

#include "base/text.h"
#include "platform/alerts.h"
#include "platform/application.h"
#include "platform/canvas.h"
#include "platform/desktop_picture.h"
#include "platform/guide_window.h"
#include "platform/linux/standard_paths.h"
#include "platform/open_panel.h"
#include "platform/screens.h"
#include "platform/shared_desktop.h"
#include "platform/status_item.h"
#include "platform/wallpaper_window.h"
#include "platform/web_view.h"
#include "platform/window_list.h"
#include "platform/workspace.h"

namespace tavelle {
namespace {

/// Loads one of the program's own libraries, "desktop.so" for instance, and gives the address of what it exports under
/// the name `function`. The library stays loaded until the process ends: some leave callbacks behind that run then.
Result<void*> loadPrivateLibrary(const char* library, const char* function) {
  void* const loaded = dlopen((privateLibraryFolder() / library).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!loaded) return Error{escapedUtf8(dlerror())};
  void* const found = dlsym(loaded, function);
  if (!found) return Error{escapedUtf8(dlerror())};
  return found;
}

constexpr auto noDisplay = "there is no display";

class NoDesktop final : public DesktopServices,
                        Alerts,
                        Application,
                        DesktopPicture,
                        OpenPanels,
                        GuideWindows,
                        Screens,
                        SharedDesktop,
                        StatusItems,
                        WallpaperWindows,
                        WebViews,
                        WindowList,
                        Workspace {
 public:
  Alerts& alerts() override { return *this; }
  Application& application() override { return *this; }
  DesktopPicture& desktopPicture() override { return *this; }
  OpenPanels& openPanels() override { return *this; }
  GuideWindows& guideWindows() override { return *this; }
  Screens& screens() override { return *this; }
  SharedDesktop& sharedDesktop() override { return *this; }
  StatusItems& statusItems() override { return *this; }
  WallpaperWindows& windows() override { return *this; }
  WebViews& webViews() override { return *this; }
  WindowList& windowList() override { return *this; }
  Workspace& workspace() override { return *this; }

 private:
  std::optional<std::size_t> run(const Alert& /*alert*/) override { return std::nullopt; }
  std::vector<std::filesystem::path> run(const OpenPanel& /*panel*/) override { return {}; }
  int run(ApplicationDelegate& /*delegate*/, const std::vector<std::string>& /*arguments*/) override { return 1; }
  void terminate() override {}
  void offer(Command /*command*/) override {}
  Result<void> set(const std::filesystem::path& /*image*/, const Screen& /*screen*/) override {
    return Error{noDisplay};
  }
  std::optional<std::string> current(const Screen& /*screen*/) const override { return std::nullopt; }
  std::vector<Screen> list() const override { return {}; }
  Registration onChange(std::function<void()> /*changed*/) override { return {}; }
  Registration onTrouble(std::function<void(const std::string&)> /*tell*/) override { return {}; }
  std::unique_ptr<StatusItem> make(std::function<void(MenuItems&)> /*menuNeedsUpdate*/) override { return nullptr; }
  std::unique_ptr<WallpaperWindow> make(const Screen& /*screen*/) override { return nullptr; }
  std::unique_ptr<WebView> make(const WebViews::Settings& /*settings*/, WebViewDelegate& /*delegate*/) override {
    return nullptr;
  }
  std::unique_ptr<GuideWindow> make(const GuideWindows::Settings& /*settings*/, WebView& /*content*/,
                                    GuideWindowDelegate& /*delegate*/) override {
    return nullptr;
  }
  std::optional<std::vector<WindowDescription>> onScreen() const override { return std::nullopt; }
  void openFolder(const std::filesystem::path& /*folder*/) override {}
  Registration onEvent(std::function<void()> /*happened*/) override { return {}; }
};

}  // namespace

bool hasDisplay() {
  constexpr std::array variables{"DISPLAY", "WAYLAND_DISPLAY"};
  return std::any_of(variables.begin(), variables.end(), [](const char* variable) {
    const char* const value = std::getenv(variable);
    return value && *value;
  });
}

Result<std::unique_ptr<DesktopServices>> openDesktop() {
  const auto open = loadPrivateLibrary("desktop.so", "tavelleOpenDesktop");
  if (!open) return open.error();
  return reinterpret_cast<OpenDesktop*>(*open)();
}

Result<std::unique_ptr<Bitmaps>> openDrawing() {
  const auto open = loadPrivateLibrary("drawing.so", "tavelleOpenDrawing");
  if (!open) return open.error();
  return reinterpret_cast<OpenDrawing*>(*open)();
}

std::unique_ptr<DesktopServices> noDesktop() { return std::make_unique<NoDesktop>(); }

}  // namespace tavelle
