#include "platform/linux/picture/session_bus.h"

#include <chrono>

#include "base/text.h"

namespace tavelle {
namespace {

/// Far more than a service takes that is well; a user waits for the answer.
constexpr std::chrono::milliseconds longestWait{5000};

}  // namespace

Result<GVariantPtr> callSessionBus(const BusMethod& method, GVariant* arguments, const char* answer,
                                   BusActivation activation) {
  const GVariantPtr owned(g_variant_ref_sink(arguments));
  const auto failure = [&](const GError* reason) {
    GErrorPtr plain(g_error_copy(reason));
    // Otherwise the error's name on the bus comes first, which is for programs.
    g_dbus_error_strip_remote_error(plain.get());
    return Error{std::string(method.service) + " " + method.name + ": " + oneLine(plain->message)};
  };
  ErrorSlot error;
  const auto bus = adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, error.out()));
  if (!bus) return failure(error.get());
  const auto flags =
      activation == BusActivation::onlyRunning ? G_DBUS_CALL_FLAGS_NO_AUTO_START : G_DBUS_CALL_FLAGS_NONE;
  GVariantPtr reply(g_dbus_connection_call_sync(bus.get(), method.service, method.path, method.interface, method.name,
                                                owned.get(), G_VARIANT_TYPE(answer), flags,
                                                static_cast<int>(longestWait.count()), nullptr, error.out()));
  if (!reply) return failure(error.get());
  return reply;
}

std::string oneLine(std::string_view text) {
  std::string line = escapedUtf8(text);
  for (char& each : line) {
    if (each == '\n' || each == '\r' || each == '\t') each = ' ';
  }
  line.erase(line.find_last_not_of(" .") + 1);
  return line;
}

}  // namespace tavelle
