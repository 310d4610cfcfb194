#include "platform/linux/desktop/linux_workspace.h"

#include <gio/gio.h>

#include <array>
#include <memory>
#include <string_view>

#include "app/file_uri.h"
#include "platform/linux/desktop/property_watch.h"
#include "platform/linux/wake_watch.h"

namespace tavelle {

void LinuxWorkspace::openFolder(const std::filesystem::path& folder) {
  g_app_info_launch_default_for_uri_async(fileUri(folder).c_str(), nullptr, nullptr, nullptr, nullptr);
}

Registration LinuxWorkspace::onEvent(std::function<void()> happened) {
  constexpr std::array<std::string_view, 3> ofRoot{"_NET_ACTIVE_WINDOW", "_NET_CURRENT_DESKTOP",
                                                   "_NET_SHOWING_DESKTOP"};
  // Minimised or not.
  constexpr std::array<std::string_view, 1> ofClients{"WM_STATE"};
  const auto manager = std::make_shared<PropertyWatch>(ofRoot, ofClients, happened);
  const auto wake = std::make_shared<WakeWatch>(std::move(happened));
  return Registration([manager, wake] {});
}

}  // namespace tavelle
