#include "platform/linux/wake_watch.h"

#include <gtest/gtest.h>
#include <stdlib.h>

namespace tavelle {
namespace {

TEST(WakeWatch, HearsOfTheEndOfASleepAndOutlivesTheBus) {
  // A bus of the test's own in the place of the system's, with a login manager on the one connection there is to it.
  const auto daemon = adopt(g_test_dbus_new(G_TEST_DBUS_NONE));
  g_test_dbus_up(daemon.get());
  setenv("DBUS_SYSTEM_BUS_ADDRESS", g_test_dbus_get_bus_address(daemon.get()), 1);
  const auto bus = adopt(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
  const guint name = g_bus_own_name_on_connection(bus.get(), "org.freedesktop.login1", G_BUS_NAME_OWNER_FLAGS_NONE,
                                                  nullptr, nullptr, nullptr, nullptr);
  const auto runLoop = [](gint64 milliseconds, const auto& isEnough) {
    const gint64 end = g_get_monotonic_time() + 1000 * milliseconds;
    while (!isEnough() && g_get_monotonic_time() < end) g_main_context_iteration(nullptr, FALSE);
  };
  int wakes = 0;
  const WakeWatch watch([&] { ++wakes; });
  WakeWatch([&] { ADD_FAILURE() << "told after its end"; });
  // Nothing tells when the watch has begun to listen.
  for (int i = 0; i < 100 && wakes == 0; ++i) {
    g_dbus_connection_emit_signal(bus.get(), nullptr, "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                                  "PrepareForSleep", g_variant_new("(b)", FALSE), nullptr);
    runLoop(200, [&] { return wakes > 0; });
  }
  EXPECT_GT(wakes, 0);
  // GLib would end the process with the bus, if it were not told otherwise.
  bool closed = false;
  g_signal_connect_swapped(bus.get(), "closed", G_CALLBACK(+[](bool* told) { *told = true; }), &closed);
  g_bus_unown_name(name);
  g_test_dbus_stop(daemon.get());
  runLoop(20'000, [&] { return closed; });
  EXPECT_TRUE(closed);
  unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

}  // namespace
}  // namespace tavelle
