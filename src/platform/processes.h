#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "base/registration.h"
#include "base/result.h"

namespace tavelle {

/// How a program has ended: with status 0 or by SIGTERM, as one that was asked to, or in some other way.
enum class Ending { asked, unasked };

/// Other programs. What they print goes nowhere. Main thread only.
class Processes {
 public:
  virtual ~Processes() = default;

  /// Runs a program to its end, however long that takes. An error only when it could not be started; how it ended is
  /// not told.
  virtual Result<void> run(const std::filesystem::path& program, const std::vector<std::string>& arguments) = 0;

  /// Starts a program beside this one. Calls `ended` on the main loop when it has ended by itself or by somebody else;
  /// dropping the handle ends it, and tells nothing.
  virtual Result<Registration> start(const std::filesystem::path& program, std::function<void(Ending)> ended) = 0;
};

}  // namespace tavelle
