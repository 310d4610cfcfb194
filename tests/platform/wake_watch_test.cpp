#include "platform/linux/wake_watch.h"

#include <gtest/gtest.h>
#include <stdlib.h>

namespace tavelle {
namespace {

/// Lets the main loop run until the condition holds, or for so long.
template <typename Condition>
bool comesTrue(double seconds, Condition condition) {
  const gint64 end = g_get_monotonic_time() + static_cast<gint64>(seconds * G_USEC_PER_SEC);
  while (!condition() && g_get_monotonic_time() < end) g_main_context_iteration(nullptr, FALSE);
  return condition();
}

TEST(WakeWatch, HearsOfTheEndOfEachSleepAndOutlivesTheBus) {
  // A bus of the test's own in the place of the system's, with a login manager on the one connection there is to it.
  const auto daemon = adopt(g_test_dbus_new(G_TEST_DBUS_NONE));
  g_test_dbus_up(daemon.get());
  setenv("DBUS_SYSTEM_BUS_ADDRESS", g_test_dbus_get_bus_address(daemon.get()), 1);
  const auto bus = adopt(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
  const guint name = g_bus_own_name_on_connection(bus.get(), "org.freedesktop.login1", G_BUS_NAME_OWNER_FLAGS_NONE,
                                                  nullptr, nullptr, nullptr, nullptr);
  const auto tellSleep = [&](bool begins) {
    g_dbus_connection_emit_signal(bus.get(), nullptr, "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                                  "PrepareForSleep", g_variant_new("(b)", begins), nullptr);
  };
  int wakes = 0;
  const WakeWatch watch([&] { ++wakes; });
  const auto goneAtOnce = [&] { WakeWatch([&] { wakes += 100; }); };
  goneAtOnce();
  // Nothing tells when the watch has begun to listen.
  for (int i = 0; i < 100 && wakes == 0; ++i) {
    tellSleep(false);
    comesTrue(0.2, [&] { return wakes > 0; });
  }
  wakes = 0;
  tellSleep(true);
  tellSleep(false);
  EXPECT_TRUE(comesTrue(20, [&] { return wakes > 0; }));
  // A watch that has gone, or one that takes the beginning for the end, would have counted more.
  EXPECT_FALSE(comesTrue(0.2, [&] { return wakes != 1; }));
  // GLib would end the process with the bus, if it were not told otherwise.
  bool closed = false;
  g_signal_connect_swapped(bus.get(), "closed", G_CALLBACK(+[](bool* told) { *told = true; }), &closed);
  g_bus_unown_name(name);
  g_test_dbus_stop(daemon.get());
  EXPECT_TRUE(comesTrue(20, [&] { return closed; }));
  unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

}  // namespace
}  // namespace tavelle
