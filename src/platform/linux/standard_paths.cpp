#include "platform/linux/standard_paths.h"

#include <glib.h>

#include <string_view>
#include <system_error>

namespace tavelle {
namespace {

namespace fs = std::filesystem;

/// The folder above the one that holds the executable.
fs::path prefix() { return executableFile().parent_path().parent_path(); }

std::optional<fs::path> ifThere(const fs::path& folder) {
  std::error_code code;
  return fs::is_directory(folder, code) ? std::optional(folder) : std::nullopt;
}

}  // namespace

fs::path homeFolder() {
  std::error_code code;
  return fs::absolute(g_get_home_dir(), code);
}

fs::path defaultsFile() { return fs::path(g_get_user_config_dir()) / "tavelle/defaults.plist"; }

fs::path agentMemoryFile() { return fs::path(g_get_user_state_dir()) / "tavelle/wallpaper-agent.plist"; }

fs::path desktopPictureFolder() { return fs::path(g_get_user_data_dir()) / "tavelle/desktop-picture"; }

std::vector<fs::path> autostartFolders() {
  std::vector<fs::path> folders{fs::path(g_get_user_config_dir()) / "autostart"};
  for (const char* const* each = g_get_system_config_dirs(); *each; ++each) {
    folders.push_back(fs::path(*each) / "autostart");
  }
  return folders;
}

fs::path executableFile() {
  std::error_code code;
  const fs::path file = fs::read_symlink("/proc/self/exe", code);
  // The kernel's mark on the name of a file that has been replaced, as an update does.
  constexpr std::string_view mark = " (deleted)";
  const std::string_view name = file.native();
  return name.ends_with(mark) && !fs::exists(file, code) ? fs::path(name.substr(0, name.size() - mark.size())) : file;
}

std::optional<fs::path> resourceFolder() { return ifThere(prefix() / "share/tavelle"); }

std::optional<fs::path> iconFolder() { return ifThere(prefix() / "share/icons"); }

fs::path privateLibraryFolder() { return prefix() / "lib/tavelle"; }

}  // namespace tavelle
