#include "platform/linux/wake_watch.h"

#include <utility>

namespace tavelle {

WakeWatch::WakeWatch(std::function<void()> woke) : woke_(std::move(woke)), connecting_(adopt(g_cancellable_new())) {
  const auto connected = [](GObject*, GAsyncResult* result, gpointer self) {
    ErrorSlot error;
    const auto bus = adopt(g_bus_get_finish(result, error.out()));
    // After a cancelled attempt the watch is no more.
    if (bus) static_cast<WakeWatch*>(self)->listen(bus.get());
  };
  g_bus_get(G_BUS_TYPE_SYSTEM, connecting_.get(), connected, this);
}

WakeWatch::~WakeWatch() {
  g_cancellable_cancel(connecting_.get());
  if (bus_) g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_);
}

void WakeWatch::listen(GDBusConnection* bus) {
  bus_ = retain(bus);
  // A restarted system bus must not take the program with it.
  g_dbus_connection_set_exit_on_close(bus, FALSE);
  const auto slept = [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters,
                        gpointer self) {
    gboolean begins = TRUE;
    if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)"))) g_variant_get(parameters, "(b)", &begins);
    if (begins) return;
    const auto woke = static_cast<WakeWatch*>(self)->woke_;
    woke();
  };
  // https://www.freedesktop.org/software/systemd/man/org.freedesktop.login1.html
  subscription_ = g_dbus_connection_signal_subscribe(bus, "org.freedesktop.login1", "org.freedesktop.login1.Manager",
                                                     "PrepareForSleep", "/org/freedesktop/login1", nullptr,
                                                     G_DBUS_SIGNAL_FLAGS_NONE, slept, this, nullptr);
}

}  // namespace tavelle
