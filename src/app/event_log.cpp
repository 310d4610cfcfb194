#include <array>
#include <chrono>
#include <cstdio>
#include <string>

#include "base/text.h"
#include "model/controller.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace tavelle {
namespace {

std::string stampOf(WallTime time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(std::chrono::floor<std::chrono::seconds>(time - day));
  std::array<char, 64> stamp{};
  std::snprintf(stamp.data(), stamp.size(), "%04d-%02u-%02u %02d:%02d:%02d +0000 ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return stamp.data();
}

}  // namespace

void Controller::log(const std::string& message) {
  if (!isUtf8(message)) return;
  const std::string line = stampOf(platform_.clock.now()) + message + "\n";
  // Opened for each line, so that the user may move or delete the file at any time. There is nobody to tell when the
  // line cannot be written, and nothing else may suffer from it.
  static_cast<void>(platform_.files.append(logURL_, line));
}

}  // namespace tavelle
