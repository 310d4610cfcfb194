#include "platform/linux/sway/sway_connection.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace tavelle {
namespace {

/// Each message begins with these letters, the payload's length and the message's number, both 32 bits in the byte
/// order of the machine.
constexpr std::string_view magic = "i3-ipc";
constexpr std::size_t lengthAt = magic.size();
constexpr std::size_t typeAt = lengthAt + sizeof(std::uint32_t);
constexpr std::size_t payloadAt = typeAt + sizeof(std::uint32_t);
/// The bit by which the numbers of events differ from those of answers.
constexpr std::uint32_t eventBit = 0x80000000U;
/// A thousand windows take less than a tenth of it.
constexpr std::uint32_t longestPayload = 16U << 20U;

std::uint32_t numberAt(std::string_view bytes, std::size_t place) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.substr(place).data(), sizeof number);
  return number;
}

void append(std::string& bytes, std::uint32_t number) {
  std::array<char, sizeof number> raw{};
  std::memcpy(raw.data(), &number, sizeof number);
  bytes.append(raw.data(), raw.size());
}

}  // namespace

std::optional<SwayConnection> SwayConnection::open(const std::filesystem::path& socket) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string& path = socket.native();
  if (path.empty() || path.size() >= sizeof address.sun_path) return std::nullopt;
  path.copy(static_cast<char*>(address.sun_path), path.size());
  // Non-blocking, so that connecting fails rather than waits when nobody takes connections any more.
  FileDescriptor descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!descriptor || connect(descriptor.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    return std::nullopt;
  }
  return SwayConnection(std::move(descriptor));
}

std::optional<std::string> SwayConnection::ask(SwayRequest request, std::string_view payload,
                                               std::chrono::milliseconds patience) {
  const Deadline deadline = std::chrono::steady_clock::now() + patience;
  std::string question(magic);
  append(question, static_cast<std::uint32_t>(payload.size()));
  append(question, static_cast<std::uint32_t>(request));
  question += payload;
  if (!send(question, deadline)) return std::nullopt;
  while (true) {
    while (auto message = takeMessage()) {
      if (message->type == static_cast<std::uint32_t>(request)) return std::move(message->payload);
      // Events may come in between; an answer to something else may not.
      if ((message->type & eventBit) == 0) return std::nullopt;
    }
    if (broken_ || !waitFor(POLLIN, deadline) || !receive()) return std::nullopt;
  }
}

std::optional<std::vector<std::string>> SwayConnection::takeEvents() {
  const bool open = receive();
  std::vector<std::string> events;
  while (auto message = takeMessage()) {
    if ((message->type & eventBit) != 0) events.push_back(std::move(message->payload));
  }
  if (broken_ || !open) return std::nullopt;
  return events;
}

bool SwayConnection::send(std::string_view bytes, Deadline deadline) const {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(sent));
    } else if (errno == EAGAIN) {
      if (!waitFor(POLLOUT, deadline)) return false;
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

bool SwayConnection::waitFor(short events, Deadline deadline) const {
  while (true) {
    const auto left =
        std::chrono::ceil<std::chrono::duration<int, std::milli>>(deadline - std::chrono::steady_clock::now());
    pollfd waiting{};
    waiting.fd = socket_.get();
    waiting.events = events;
    const int ready = poll(&waiting, 1, std::max(left.count(), 0));
    if (ready > 0) return true;
    if (ready == 0 || errno != EINTR) return false;
  }
}

bool SwayConnection::receive() {
  std::array<char, 16384> block{};
  while (true) {
    const ssize_t count = recv(socket_.get(), block.data(), block.size(), 0);
    if (count > 0) {
      arrived_.append(block.data(), static_cast<std::size_t>(count));
      // One message at most is kept; whoever sends more without an end is not listened to without an end.
      if (arrived_.size() > longestPayload + payloadAt) return true;
    } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
      return false;
    } else if (errno == EAGAIN) {
      return true;
    }
  }
}

std::optional<SwayConnection::Message> SwayConnection::takeMessage() {
  if (arrived_.size() < payloadAt) return std::nullopt;
  const std::uint32_t length = numberAt(arrived_, lengthAt);
  if (!arrived_.starts_with(magic) || length > longestPayload) {
    broken_ = true;
    return std::nullopt;
  }
  if (arrived_.size() < payloadAt + length) return std::nullopt;
  Message message{.type = numberAt(arrived_, typeAt), .payload = arrived_.substr(payloadAt, length)};
  arrived_.erase(0, payloadAt + length);
  return message;
}

std::optional<std::string> SwayClient::ask(SwayRequest request) {
  const auto begin = std::chrono::steady_clock::now();
  if (begin < restsUntil_) return std::nullopt;
  const auto hangs = [&] { return std::chrono::steady_clock::now() - begin >= patience_.answer; };
  const bool wasConnected = connection_.has_value();
  auto answer = askOnce(request);
  // The old connection may have been closed since the last question, which says nothing about a new one.
  if (!answer && wasConnected && !hangs()) answer = askOnce(request);
  if (!answer && hangs()) restsUntil_ = std::chrono::steady_clock::now() + patience_.rest;
  return answer;
}

std::optional<std::string> SwayClient::askOnce(SwayRequest request) {
  if (!connect()) return std::nullopt;
  auto answer = connection_->ask(request, "", patience_.answer);
  if (!answer) connection_.reset();
  return answer;
}

std::optional<pid_t> SwayClient::server() {
  return connect() ? processBehind(connection_->descriptor()) : std::nullopt;
}

bool SwayClient::connect() {
  if (!connection_) connection_ = SwayConnection::open(socket_);
  return connection_.has_value();
}

std::optional<pid_t> processBehind(int socket) {
  ucred other{};
  socklen_t size = sizeof other;
  if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &other, &size) != 0 || other.pid <= 0) return std::nullopt;
  return other.pid;
}

}  // namespace tavelle
