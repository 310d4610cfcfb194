#pragma once

#include <memory>

#include "platform/linux/desktop_services.h"

namespace tavelle {

/// What stands in where there is no display: no screens, no windows, and nobody to answer an alert. It has no pages,
/// and the application does not run.
std::unique_ptr<DesktopServices> noDesktop();

}  // namespace tavelle
