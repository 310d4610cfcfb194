#pragma once

#include "base/result.h"

namespace tavelle {

/// Loads one of the program's own libraries, "desktop.so" for instance, and gives the address of what it exports under
/// the name `function`. The library stays loaded until the process ends: some leave callbacks behind that run then.
Result<void*> loadPrivateLibrary(const char* library, const char* function);

}  // namespace tavelle
