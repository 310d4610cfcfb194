#include "platform/linux/file_uri.h"

#include <glib.h>

#include "platform/linux/handles.h"

namespace tavelle {

std::string fileUri(const std::filesystem::path& file) {
  const GCharPtr uri(g_filename_to_uri(file.c_str(), nullptr, nullptr));
  return uri ? uri.get() : std::string();
}

}  // namespace tavelle
