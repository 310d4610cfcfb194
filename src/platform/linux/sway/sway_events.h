#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include "platform/linux/sway/sway_connection.h"

namespace tavelle {

/// Listens to what sway tells of its windows and workspaces; where nobody tells, or no longer, it tries again every ten
/// seconds. Main thread only.
class SwayEvents {
 public:
  /// Calls `happened` on the main loop after windows may have changed their places, once for all that comes in
  /// together, and after times in which nobody told. It may end the listening.
  SwayEvents(std::filesystem::path socket, std::function<void()> happened, SwayPatience patience = {});
  SwayEvents(const SwayEvents&) = delete;
  SwayEvents& operator=(const SwayEvents&) = delete;
  ~SwayEvents();

 private:
  static int readable(int descriptor, unsigned condition, void* data);

  void listen();
  void listenLater();
  void tell() const;
  /// Takes all events that have come in. Whether any of them, or their end, was worth telling.
  bool drain();

  const std::filesystem::path socket_;
  const std::function<void()> happened_;
  const SwayPatience patience_;
  std::optional<SwayConnection> connection_;
  unsigned source_ = 0;
  unsigned timer_ = 0;
};

}  // namespace tavelle
