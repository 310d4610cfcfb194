#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace tavelle {

/// What the running application is told.
class ApplicationDelegate {
 public:
  virtual ~ApplicationDelegate() = default;

  /// Once, when the event loop has started. Not in a process that found the application running already.
  virtual void applicationDidFinishLaunching() = 0;

  /// The user has started the application again while it runs, e.g. from a menu of programs. The desktop itself
  /// does nothing then.
  virtual void applicationShouldHandleReopen() = 0;
};

/// Something that can be asked of the running application from outside, e.g. by a desktop entry or a script. Whoever
/// asks does not wait until it is done.
struct Command {
  std::string name;
  std::variant<std::function<void()>, std::function<void(std::int64_t)>, std::function<void(double)>,
               std::function<void(const std::string&)>>
      perform;
};

/// The application in its desktop session. There is one running instance for a session. Main thread only.
class Application {
 public:
  virtual ~Application() = default;

  /// Runs the event loop until `terminate()`, SIGTERM or SIGINT. Where the application runs already in this session, it
  /// only tells that one of this start. The application shows in no dock or task bar and goes on without any window.
  /// `arguments` are the process's own, without the program's path: the desktop may have left a word of its own there.
  /// Returns the process's exit status.
  virtual int run(ApplicationDelegate& delegate, const std::vector<std::string>& arguments) = 0;

  /// Ends the event loop. `run` returns after the current event.
  virtual void terminate() = 0;

  /// Lets `command` be called from outside for as long as the application runs.
  virtual void offer(Command command) = 0;
};

}  // namespace tavelle
