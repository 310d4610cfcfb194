#include "platform/linux/child_processes.h"

#include <gio/gio.h>

#include <csignal>
#include <memory>

#include "base/text.h"
#include "platform/linux/handles.h"

namespace tavelle {
namespace {

constexpr auto quietly =
    static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_SILENCE | G_SUBPROCESS_FLAGS_STDERR_SILENCE);

Result<GObjectPtr<GSubprocess>> spawn(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
  std::vector<const char*> command{program.c_str()};
  for (const auto& argument : arguments) command.push_back(argument.c_str());
  command.push_back(nullptr);
  ErrorSlot error;
  auto process = adopt(g_subprocess_newv(command.data(), quietly, error.out()));
  if (!process) return Error{escapedUtf8(error.message())};
  return process;
}

/// A child that somebody waits for.
struct Child {
  GObjectPtr<GSubprocess> process;
  std::function<void(Ending)> ended;
};

/// Of one that has ended.
Ending endingOf(GSubprocess* process) {
  const bool asked = g_subprocess_get_if_exited(process) ? g_subprocess_get_exit_status(process) == 0
                                                         : g_subprocess_get_term_sig(process) == SIGTERM;
  return asked ? Ending::asked : Ending::unasked;
}

}  // namespace

Result<void> ChildProcesses::run(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
  const auto process = spawn(program, arguments);
  if (!process) return process.error();
  g_subprocess_wait(process->get(), nullptr, nullptr);
  return {};
}

Result<Registration> ChildProcesses::start(const std::filesystem::path& program, std::function<void(Ending)> ended) {
  auto process = spawn(program, {});
  if (!process) return process.error();
  const auto child = std::make_shared<Child>(Child{std::move(process).value(), std::move(ended)});
  using Watched = std::weak_ptr<Child>;
  g_subprocess_wait_async(
      child->process.get(), nullptr,
      [](GObject*, GAsyncResult*, gpointer data) {
        const std::unique_ptr<Watched> watched(static_cast<Watched*>(data));
        const auto waiting = watched->lock();
        // The one who is told may drop the handle.
        if (waiting && waiting->ended) std::exchange(waiting->ended, nullptr)(endingOf(waiting->process.get()));
      },
      std::make_unique<Watched>(child).release());
  return Registration([child] {
    child->ended = nullptr;
    g_subprocess_send_signal(child->process.get(), SIGTERM);
  });
}

}  // namespace tavelle
