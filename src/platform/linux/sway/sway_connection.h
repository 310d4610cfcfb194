#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/file_operations.h"

namespace tavelle {

/// What sway can be asked, by its own numbers (sway-ipc(7)).
enum class SwayRequest : std::uint32_t { workspaces = 1, subscribe = 2, tree = 4 };

struct SwayPatience {
  /// How long an answer is waited for: far longer than sway takes for a thousand windows, but the user waits meanwhile.
  std::chrono::milliseconds answer{250};
  /// How long sway is left alone after it hasn't answered, or after its events have ended.
  std::chrono::milliseconds rest{10'000};
};

/// A connection to the socket on which sway answers questions about itself. It never waits longer than it is told to.
/// One thread at a time.
class SwayConnection {
 public:
  /// None when nobody listens at `socket`, a path.
  static std::optional<SwayConnection> open(const std::filesystem::path& socket);

  /// The answer, JSON as sway wrote it. None when the whole of it has not come within `patience`, when sway has closed
  /// the connection, or when what came makes no sense. Don't use the connection after that: a late answer would pass
  /// for the answer to the next question.
  std::optional<std::string> ask(SwayRequest request, std::string_view payload, std::chrono::milliseconds patience);

  /// The events, each JSON as sway wrote it, that have come in since the last call, in their order; for a connection
  /// that has subscribed to some. Does not wait. None when the connection has broken: then no more can come.
  std::optional<std::vector<std::string>> takeEvents();

  /// Readable when events have come in.
  int descriptor() const { return socket_.get(); }

 private:
  struct Message {
    std::uint32_t type;
    std::string payload;
  };
  using Deadline = std::chrono::steady_clock::time_point;

  explicit SwayConnection(FileDescriptor socket) : socket_(std::move(socket)) {}

  bool send(std::string_view bytes, Deadline deadline) const;
  bool waitFor(short events, Deadline deadline) const;
  /// Adds what has arrived to what waits to be understood. False when nothing more can come.
  bool receive();
  /// Takes the first whole message out of what has arrived.
  std::optional<Message> takeMessage();

  FileDescriptor socket_;
  std::string arrived_;
  bool broken_ = false;
};

/// Asks sway question after question. It keeps its connection, and opens another when sway has closed it, as a sway
/// that starts anew does. One thread at a time.
class SwayClient {
 public:
  explicit SwayClient(std::filesystem::path socket, SwayPatience patience = {})
      : socket_(std::move(socket)), patience_(patience) {}

  /// The answer, JSON as sway wrote it; none when there is none. Blocks for about the time of `SwayPatience::answer` at
  /// most. When that has passed in vain, sway hangs: then there are no answers for the time of `SwayPatience::rest`,
  /// and nobody waits for them.
  std::optional<std::string> ask(SwayRequest request);

  const std::filesystem::path& socket() const { return socket_; }
  /// The process that answers; none when nobody does.
  std::optional<pid_t> server();

 private:
  bool connect();
  /// Ends a connection that gives no answer.
  std::optional<std::string> askOnce(SwayRequest request);

  const std::filesystem::path socket_;
  const SwayPatience patience_;
  std::optional<SwayConnection> connection_;
  std::chrono::steady_clock::time_point restsUntil_;
};

/// The process at the other end of a connected local socket; none when the kernel does not tell.
std::optional<pid_t> processBehind(int socket);

}  // namespace tavelle
