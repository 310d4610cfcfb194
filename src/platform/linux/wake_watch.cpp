#include "platform/linux/wake_watch.h"

#include <utility>

namespace tavelle {

WakeWatch::WakeWatch(std::function<void()> woke) : woke_(std::move(woke)), self_(std::make_shared<WakeWatch*>(this)) {
  using Self = std::weak_ptr<WakeWatch*>;
  // Not to be cancelled: the whole process shares one connection, and with it the attempt to make it.
  g_bus_get(
      G_BUS_TYPE_SYSTEM, nullptr,
      [](GObject*, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Self> watch(static_cast<Self*>(data));
        ErrorSlot error;
        const auto bus = adopt(g_bus_get_finish(result, error.out()));
        if (const auto self = watch->lock(); self && bus) (*self)->listen(bus.get());
      },
      std::make_unique<Self>(self_).release());
}

WakeWatch::~WakeWatch() {
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
