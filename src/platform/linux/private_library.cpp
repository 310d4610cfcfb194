#include "platform/linux/private_library.h"

#include <dlfcn.h>

#include "base/text.h"
#include "platform/linux/standard_paths.h"

namespace tavelle {

Result<void*> loadPrivateLibrary(const char* library, const char* function) {
  void* const loaded = dlopen((privateLibraryFolder() / library).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!loaded) return Error{escapedUtf8(dlerror())};
  void* const found = dlsym(loaded, function);
  if (!found) return Error{escapedUtf8(dlerror())};
  return found;
}

}  // namespace tavelle
