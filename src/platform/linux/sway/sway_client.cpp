#include "platform/linux/sway/sway_client.h"

namespace tavelle {
namespace {

using namespace std::chrono_literals;

/// Far more than sway takes for a thousand windows; the user waits meanwhile.
constexpr auto patience = 250ms;
constexpr auto rest = 10s;

}  // namespace

std::optional<std::string> SwayClient::ask(SwayRequest request) {
  const auto begin = std::chrono::steady_clock::now();
  if (begin < restsUntil_) return std::nullopt;
  // A connection of earlier may have ended since: that says nothing about a new one.
  for (bool first = connection_.has_value(); connect(); first = false) {
    if (auto answer = connection_->ask(request, "", patience)) return answer;
    connection_.reset();
    if (std::chrono::steady_clock::now() - begin >= patience) {
      restsUntil_ = std::chrono::steady_clock::now() + rest;
      return std::nullopt;
    }
    if (!first) return std::nullopt;
  }
  return std::nullopt;
}

std::optional<pid_t> SwayClient::server() { return connect() ? connection_->server() : std::nullopt; }

bool SwayClient::connect() {
  if (!connection_) connection_ = SwayConnection::open(socket_);
  return connection_.has_value();
}

}  // namespace tavelle
