#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

#include "platform/linux/glib_main_loop.h"
#include "platform/registration.h"

namespace tavelle {

/// Notices a page process that has locked up for good: it owes an answer, and for many looks in a row its main thread
/// has neither run nor been woken. A page that is busy runs; one that waits for the processor or the disk is not
/// asleep; and while the machine sleeps there are no looks.
class PageWatch {
 public:
  /// `ask` is to put a harmless question to the page and to call `questionAnswered` when the answer comes, or cannot
  /// come any more; `lockedUp` is to end the process.
  PageWatch(std::function<void()> ask, std::function<void()> lockedUp);

  void processStarted(pid_t process);
  void processEnded();

  /// The program has told the page something, and the page has answered, or cannot any more.
  void told();
  void acknowledged();
  void questionAnswered();

 private:
  void look();
  void lookAgainAfter(double seconds);

  std::function<void()> ask_;
  std::function<void()> lockedUp_;
  GLibMainLoop mainLoop_;
  pid_t process_ = 0;
  int unacknowledged_ = 0;
  bool questionOpen_ = false;
  int looksAsleep_ = 0;
  /// What the process's main thread had done at the last look.
  std::string lastActivity_;
  Registration nextLook_;
};

}  // namespace tavelle
