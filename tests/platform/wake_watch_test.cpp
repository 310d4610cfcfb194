#include "platform/linux/wake_watch.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <memory>

namespace tavelle {
namespace {

/// Lets the main loop run until the condition holds, or for so long.
template <typename Condition>
bool comesTrue(double seconds, Condition condition) {
  const gint64 end = g_get_monotonic_time() + static_cast<gint64>(seconds * G_USEC_PER_SEC);
  while (!condition() && g_get_monotonic_time() < end) g_main_context_iteration(nullptr, FALSE);
  return condition();
}

/// A bus of the test's own in the place of the system's, with a login manager on it.
class SystemBus {
 public:
  SystemBus() : bus_(adopt(g_test_dbus_new(G_TEST_DBUS_NONE))) {
    g_test_dbus_up(bus_.get());
    const char* const address = g_test_dbus_get_bus_address(bus_.get());
    setenv("DBUS_SYSTEM_BUS_ADDRESS", address, 1);
    constexpr auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    manager_ = adopt(g_dbus_connection_new_for_address_sync(address, flags, nullptr, nullptr, nullptr));
    name_ = g_bus_own_name_on_connection(manager_.get(), "org.freedesktop.login1", G_BUS_NAME_OWNER_FLAGS_NONE, nullptr,
                                         nullptr, nullptr, nullptr);
  }
  ~SystemBus() {
    g_bus_unown_name(name_);
    manager_.reset();
    g_test_dbus_stop(bus_.get());
    unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
  }

  void tellSleep(bool begins) {
    g_dbus_connection_emit_signal(manager_.get(), nullptr, "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                                  "PrepareForSleep", g_variant_new("(b)", begins), nullptr);
  }

 private:
  const GObjectPtr<GTestDBus> bus_;
  GObjectPtr<GDBusConnection> manager_;
  guint name_ = 0;
};

TEST(WakeWatch, HearsOfTheEndOfEachSleepAndOutlivesTheBus) {
  int wakes = 0;
  auto bus = std::make_unique<SystemBus>();
  const WakeWatch watch([&] { ++wakes; });
  const auto goneAtOnce = [&] { WakeWatch([&] { wakes += 100; }); };
  goneAtOnce();
  // Nothing tells when the watch has begun to listen.
  for (int i = 0; i < 100 && wakes == 0; ++i) {
    bus->tellSleep(false);
    comesTrue(0.2, [&] { return wakes > 0; });
  }
  wakes = 0;
  bus->tellSleep(true);
  bus->tellSleep(false);
  EXPECT_TRUE(comesTrue(20, [&] { return wakes > 0; }));
  // A watch that has gone, or one that takes the beginning for the end, would have counted more.
  EXPECT_FALSE(comesTrue(0.2, [&] { return wakes != 1; }));
  // GLib would end the process with the bus, if it were not told otherwise.
  bus.reset();
  comesTrue(0.3, [] { return false; });
}

}  // namespace
}  // namespace tavelle
