#pragma once

#include <gio/gio.h>

#include <functional>
#include <memory>

#include "platform/linux/handles.h"

namespace tavelle {

/// Listens for the machine's waking up, as logind tells it on the system bus. Where there is no system bus it never
/// hears anything. Main thread only.
class WakeWatch {
 public:
  /// Calls `woke` on the main loop. It may end the watch.
  explicit WakeWatch(std::function<void()> woke);
  WakeWatch(const WakeWatch&) = delete;
  WakeWatch& operator=(const WakeWatch&) = delete;
  ~WakeWatch();

 private:
  void listen(GDBusConnection* bus);

  const std::function<void()> woke_;
  /// Gone when the watch is, for the attempt to connect that may outlive it.
  const std::shared_ptr<WakeWatch*> self_;
  GObjectPtr<GDBusConnection> bus_;
  guint subscription_ = 0;
};

}  // namespace tavelle
