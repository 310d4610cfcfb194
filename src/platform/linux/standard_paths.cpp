#include "platform/linux/standard_paths.h"

#include <glib.h>

#include <system_error>

namespace tavelle {
namespace {

namespace fs = std::filesystem;

/// The folder above the one that holds the executable.
fs::path prefix() {
  std::error_code code;
  return fs::read_symlink("/proc/self/exe", code).parent_path().parent_path();
}

}  // namespace

fs::path homeFolder() {
  std::error_code code;
  return fs::absolute(g_get_home_dir(), code);
}

fs::path defaultsFile() { return fs::path(g_get_user_config_dir()) / "tavelle/defaults.plist"; }

fs::path agentMemoryFile() { return fs::path(g_get_user_state_dir()) / "tavelle/wallpaper-agent.plist"; }

std::optional<fs::path> resourceFolder() {
  const fs::path folder = prefix() / "share/tavelle";
  std::error_code code;
  return fs::is_directory(folder, code) ? std::optional(folder) : std::nullopt;
}

fs::path privateLibraryFolder() { return prefix() / "lib/tavelle"; }

}  // namespace tavelle
