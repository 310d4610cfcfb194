#include "platform/linux/desktop_services.h"

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "platform/linux/standard_paths.h"

namespace tavelle {

bool hasDisplay() {
  constexpr std::array variables{"DISPLAY", "WAYLAND_DISPLAY"};
  return std::any_of(variables.begin(), variables.end(), [](const char* variable) {
    const char* const value = std::getenv(variable);
    return value && *value;
  });
}

Result<std::unique_ptr<DesktopServices>> openDesktop() {
  // Never unloaded: the toolkit leaves callbacks behind that run at the end of the process.
  void* const library = dlopen((privateLibraryFolder() / "desktop.so").c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library) return Error{dlerror()};
  auto* const open = reinterpret_cast<OpenDesktop*>(dlsym(library, "tavelleOpenDesktop"));
  if (!open) return Error{dlerror()};
  return open();
}

}  // namespace tavelle
