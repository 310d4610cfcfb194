#include "platform/linux/sway/sway_client.h"

namespace tavelle {

std::optional<std::string> SwayClient::ask(SwayRequest request) {
  const auto begin = std::chrono::steady_clock::now();
  if (begin < restsUntil_) return std::nullopt;
  // A connection of earlier may have ended since: that says nothing about a new one.
  for (bool isOld = connection_.has_value(); connect(); isOld = false) {
    if (auto answer = connection_->ask(request, "", patience_.answer)) return answer;
    connection_.reset();
    if (std::chrono::steady_clock::now() - begin >= patience_.answer) {
      restsUntil_ = std::chrono::steady_clock::now() + patience_.rest;
      return std::nullopt;
    }
    if (!isOld) return std::nullopt;
  }
  return std::nullopt;
}

std::optional<pid_t> SwayClient::server() { return connect() ? connection_->server() : std::nullopt; }

bool SwayClient::connect() {
  if (!connection_) connection_ = SwayConnection::open(socket_);
  return connection_.has_value();
}

}  // namespace tavelle
