#include "platform/linux/desktop_services.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "platform/linux/private_library.h"

namespace tavelle {

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

}  // namespace tavelle
