#pragma once

#include <gio/gio.h>

#include <string>
#include <string_view>

#include "base/result.h"
#include "platform/linux/handles.h"

namespace tavelle {

/// A method of a service on the session bus.
struct BusMethod {
  const char* service;
  const char* path;
  const char* interface;
  const char* name;
};

/// Whether a call may start the service that it is for.
enum class BusActivation { start, onlyRunning };

/// Calls the method and waits for the answer, 5 seconds at most. Takes over `arguments`, a tuple. The answer is of the
/// type `answer`. An error says which service it is about and why it has not answered, or what it answered. Any thread.
Result<GVariantPtr> callSessionBus(const BusMethod& method, GVariant* arguments, const char* answer,
                                   BusActivation activation);

/// What another program said, as the one line that an error's description is.
std::string oneLine(std::string_view text);

}  // namespace tavelle
