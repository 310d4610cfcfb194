#include "platform/linux/desktop_services.h"

#include <dlfcn.h>

#include <cstdlib>

#include "platform/linux/standard_paths.h"

namespace tavelle {

bool hasDisplay() {
  for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY"}) {
    const char* value = std::getenv(variable);
    if (value && *value) return true;
  }
  return false;
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
