#include "platform/linux/gio_workspace.h"

#include <gio/gio.h>

#include "platform/linux/handles.h"

namespace tavelle {

void GioWorkspace::openFolder(const std::filesystem::path& folder) {
  const auto file = adopt(g_file_new_for_path(folder.c_str()));
  const GCharPtr uri(g_file_get_uri(file.get()));
  g_app_info_launch_default_for_uri_async(uri.get(), nullptr, nullptr, nullptr, nullptr);
}

}  // namespace tavelle
