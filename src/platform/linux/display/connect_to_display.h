#pragma once

#include <memory>

#include "base/result.h"
#include "platform/linux/toolkit/display_server.h"

namespace tavelle {

/// Connects the toolkit, and all that does without the toolkit: to a Wayland compositor where it can put layers on the
/// screen (wlr-layer-shell), otherwise to an X server, which also is how to reach a Wayland compositor without layers.
/// `GDK_BACKEND` in the environment rules out one or the other, as in every program of the toolkit's. An error when no
/// server that is left can be reached. Once in a process. `programName` is the one that the server is told.
Result<std::unique_ptr<DisplayServer>> connectToDisplay(const char* programName);

}  // namespace tavelle
