#pragma once

#include <string>
#include <string_view>

#include "platform/clock.h"

namespace tavelle {

/// One line of the event log: "2025-03-14 09:26:53 +0000 message" and a line feed. The time is UTC in every locale.
std::string eventLogLine(WallTime time, std::string_view message);

}  // namespace tavelle
