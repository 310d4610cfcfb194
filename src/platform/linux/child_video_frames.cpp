#include "platform/linux/child_video_frames.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <optional>
#include <utility>
#include <vector>

#include "base/text.h"
#include "platform/linux/file_operations.h"

namespace tavelle {
namespace {

using SteadyClock = std::chrono::steady_clock;

/// A child process that leads a group of its own. When this dies, the whole group is killed and the child is waited
/// for.
class GroupLeader {
 public:
  explicit GroupLeader(pid_t id) : id_(id) {}
  GroupLeader(GroupLeader&& other) noexcept : id_(std::exchange(other.id_, 0)) {}
  GroupLeader& operator=(GroupLeader&&) = delete;
  GroupLeader(const GroupLeader&) = delete;
  GroupLeader& operator=(const GroupLeader&) = delete;
  ~GroupLeader() {
    if (id_ != 0) end();
  }

  /// Waits for the child to end, and gives how it did, as `waitpid` tells it; none when it still runs at `deadline`.
  std::optional<int> statusBefore(SteadyClock::time_point deadline) {
    // It is about to end; short naps are simpler than a signal.
    constexpr int milliseconds = 1;
    while (SteadyClock::now() < deadline) {
      siginfo_t info{};
      if (waitid(P_PID, static_cast<id_t>(id_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid == id_) {
        return end();
      }
      poll(nullptr, 0, milliseconds);
    }
    return std::nullopt;
  }

 private:
  /// The group goes first: once the child has been waited for, its number may be somebody else's.
  int end() {
    kill(-id_, SIGKILL);
    int status = 0;
    while (waitpid(id_, &status, 0) < 0 && errno == EINTR) continue;
    id_ = 0;
    return status;
  }

  pid_t id_;
};

Result<GroupLeader> spawn(const std::filesystem::path& program, std::vector<std::string> arguments,
                          const FileDescriptor& output) {
  posix_spawn_file_actions_t files{};
  posix_spawnattr_t attributes{};
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&files, output.get(), STDOUT_FILENO);
  sigset_t none{};
  sigemptyset(&none);
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
  posix_spawnattr_setpgroup(&attributes, 0);
  posix_spawnattr_setsigmask(&attributes, &none);

  arguments.insert(arguments.begin(), program.native());
  std::vector<char*> values;
  values.reserve(arguments.size() + 1);
  for (auto& argument : arguments) values.push_back(argument.data());
  values.push_back(nullptr);
  pid_t id = 0;
  const int failure = posix_spawn(&id, program.c_str(), &files, &attributes, values.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  if (failure != 0) return systemError(program.native(), failure);
  return GroupLeader(id);
}

Error tooLong() { return {"the decoder takes too long"}; }

/// All that comes out of the pipe before its other end is closed, which must be before `deadline`.
Result<std::string> readBefore(SteadyClock::time_point deadline, const FileDescriptor& pipe) {
  // Several times the largest picture: a decoder that a video has taken over could send without an end.
  constexpr std::size_t most = 128UL << 20U;
  std::string bytes;
  std::array<char, 65536> block{};
  while (true) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now()).count();
    pollfd waited{};
    waited.fd = pipe.get();
    waited.events = POLLIN;
    const int ready = poll(&waited, 1, static_cast<int>(std::max<decltype(left)>(left, 0)));
    if (ready < 0 && errno == EINTR) continue;
    if (ready == 0) return tooLong();
    if (ready < 0) return systemError("poll", errno);
    const ssize_t count = read(pipe.get(), block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return systemError("read", errno);
    if (count == 0) return bytes;
    bytes.append(block.data(), static_cast<std::size_t>(count));
    if (bytes.size() > most) return Error{"the decoder sends too much"};
  }
}

}  // namespace

Result<std::string> ChildVideoFrames::jpegOfFrame(const std::filesystem::path& video,
                                                  std::chrono::milliseconds time) const {
  const auto deadline = SteadyClock::now() + limit_;
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return systemError("pipe", errno);
  const FileDescriptor output(ends[0]);
  FileDescriptor input(ends[1]);
  auto helper = spawn(helper_, {video.native(), std::to_string(std::chrono::nanoseconds(time).count())}, input);
  if (!helper) return helper.error();
  // Or the end of what the helper writes would never be seen.
  input = FileDescriptor();

  GroupLeader leader = std::move(helper).value();
  auto answer = readBefore(deadline, output);
  if (!answer) return answer;
  const auto status = leader.statusBefore(deadline);
  if (!status) return tooLong();
  if (!WIFEXITED(*status)) return Error{"the decoder crashed"};
  if (WEXITSTATUS(*status) != 0 || answer->empty()) return Error{escapedUtf8(answer->substr(0, answer->find('\n')))};
  return answer;
}

}  // namespace tavelle
