#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/linux/sway/sway_connection.h"

namespace tavelle {

/// Asks sway again and again, over one connection as long as that lasts. One thread at a time.
class SwayClient {
 public:
  explicit SwayClient(std::filesystem::path socket, SwayPatience patience = {})
      : socket_(std::move(socket)), patience_(patience) {}

  /// The answer, JSON as sway wrote it. Waits a quarter of a second at most; whoever has let it wait so long is not
  /// asked again for ten seconds. None when there was no answer.
  std::optional<std::string> ask(SwayRequest request);

  /// The process that answers; none when nobody does.
  std::optional<pid_t> server();

 private:
  bool connect();

  const std::filesystem::path socket_;
  const SwayPatience patience_;
  std::optional<SwayConnection> connection_;
  std::chrono::steady_clock::time_point restsUntil_;
};

}  // namespace tavelle
