#include "platform/linux/toolkit/linux_workspace.h"

#include <gio/gio.h>

#include <memory>

#include "base/file_uri.h"
#include "platform/linux/toolkit/window_manager.h"
#include "platform/linux/wake_watch.h"

namespace tavelle {

void LinuxWorkspace::openFolder(const std::filesystem::path& folder) {
  g_app_info_launch_default_for_uri_async(fileUri(folder).c_str(), nullptr, nullptr, nullptr, nullptr);
}

Registration LinuxWorkspace::onEvent(std::function<void()> happened) {
  const auto windows = std::make_shared<Registration>(manager_.onWindowEvent(happened));
  const auto wake = std::make_shared<WakeWatch>(std::move(happened));
  return Registration([windows, wake] {});
}

}  // namespace tavelle
