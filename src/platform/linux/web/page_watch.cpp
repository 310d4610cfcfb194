#include "platform/linux/web/page_watch.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

namespace tavelle {
namespace {

/// Between questions to a page that answers, and between looks at one that owes an answer.
constexpr std::chrono::seconds questionInterval{3};
constexpr std::chrono::seconds lookInterval{1};
/// So many looks in a row must find the process asleep. The known way to lock up is to be told to pause at the wrong
/// moment, so that little patience is enough while a command goes unanswered. A page that just does not answer a
/// question may be waiting for a slow server, which its main thread does asleep.
constexpr int looksUntilLockedUp = 6;
constexpr int looksUntilLockedUpUnprovoked = 60;

/// Processor time and switches of the main thread of `process`; nothing when it is not asleep (or stopped), or gone.
std::string sleepingActivity(pid_t process) {
  const std::filesystem::path thread =
      std::filesystem::path("/proc") / std::to_string(process) / "task" / std::to_string(process);
  std::ifstream stat(thread / "stat");
  std::string line;
  std::getline(stat, line);
  // "pid (name) state ...": the name may hold anything, also a parenthesis.
  const auto nameEnd = line.rfind(')');
  if (nameEnd == std::string::npos || nameEnd + 2 >= line.size()) return {};
  const char state = line[nameEnd + 2];
  if (state != 'S' && state != 'T') return {};

  std::istringstream fields(line.substr(nameEnd + 2));
  std::string activity;
  std::string field;
  // utime and stime are the 14th and 15th field of the line (proc(5)), the state being the 3rd.
  for (int i = 3; i <= 15 && fields >> field; ++i) {
    if (i >= 14) activity += field + " ";
  }
  std::ifstream status(thread / "status");
  while (std::getline(status, line)) {
    if (line.find("ctxt_switches") != std::string::npos) activity += line + " ";
  }
  return activity;
}

}  // namespace

PageWatch::PageWatch(std::function<void()> ask, std::function<void()> lockedUp)
    : ask_(std::move(ask)), lockedUp_(std::move(lockedUp)) {}

void PageWatch::processStarted(pid_t process) {
  process_ = process;
  looksAsleep_ = 0;
  lastActivity_.clear();
  lookAgainAfter(questionInterval);
}

void PageWatch::processEnded() {
  process_ = 0;
  nextLook_.cancel();
}

void PageWatch::sent(Message message) { ++(message == Message::command ? openCommands_ : openQuestions_); }

void PageWatch::answered(Message message) { --(message == Message::command ? openCommands_ : openQuestions_); }

void PageWatch::look() {
  if (openCommands_ == 0 && openQuestions_ == 0) {
    looksAsleep_ = 0;
    lastActivity_.clear();
    ask_();
    lookAgainAfter(questionInterval);
    return;
  }
  const std::string activity = sleepingActivity(process_);
  looksAsleep_ = !activity.empty() && activity == lastActivity_ ? looksAsleep_ + 1 : 0;
  lastActivity_ = activity;
  lookAgainAfter(lookInterval);
  if (looksAsleep_ < (openCommands_ > 0 ? looksUntilLockedUp : looksUntilLockedUpUnprovoked)) return;
  looksAsleep_ = 0;
  lockedUp_();
}

void PageWatch::lookAgainAfter(std::chrono::seconds interval) {
  nextLook_ = mainLoop_.after(interval, [this] { look(); });
}

}  // namespace tavelle
