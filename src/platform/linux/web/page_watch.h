#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>

#include "base/registration.h"
#include "platform/linux/glib_main_loop.h"

namespace tavelle {

/// Notices a page process that has locked up for good: it owes an answer, and for many looks in a row its main thread
/// has neither run nor been woken. A page that is busy runs; one that waits for the processor or the disk is not
/// asleep; and while the machine sleeps there are no looks.
class PageWatch {
 public:
  enum class Message { command, question };

  /// `ask` is to put a harmless question to the page; `lockedUp` is to end the process.
  PageWatch(std::function<void()> ask, std::function<void()> lockedUp);

  void processStarted(pid_t process);
  void processEnded();

  /// The page has been sent a message, and has answered it or cannot any more.
  void sent(Message message);
  void answered(Message message);

 private:
  void look();
  void lookAgainAfter(std::chrono::seconds interval);

  std::function<void()> ask_;
  std::function<void()> lockedUp_;
  GLibMainLoop mainLoop_;
  pid_t process_ = 0;
  int openCommands_ = 0;
  int openQuestions_ = 0;
  int looksAsleep_ = 0;
  /// What the process's main thread had done at the last look.
  std::string lastActivity_;
  Registration nextLook_;
};

}  // namespace tavelle
