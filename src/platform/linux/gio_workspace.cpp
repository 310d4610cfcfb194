#include "platform/linux/gio_workspace.h"

#include <gio/gio.h>

#include "platform/linux/file_uri.h"

namespace tavelle {

void GioWorkspace::openFolder(const std::filesystem::path& folder) {
  g_app_info_launch_default_for_uri_async(fileUri(folder).c_str(), nullptr, nullptr, nullptr, nullptr);
}

}  // namespace tavelle
