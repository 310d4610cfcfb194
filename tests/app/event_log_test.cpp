#include "fakes/program_test.h"

namespace tavelle {
namespace {

using EventLog = ProgramTest;

TEST_F(EventLog, AppendsTextWithTheTimeInUtcAndStartsAgainWhenTheFileIsTakenAway) {
  constexpr auto logFile = "/home/Library/Logs/Tavelle.log";
  platform.files.put(logFile, "what the user wrote\n");
  // 1741944413 is 2025-03-14 09:26:53 UTC.
  platform.clock.time = WallTime(std::chrono::seconds(1741944413) + std::chrono::milliseconds(999));
  controller.log("one");
  controller.log("not text: caf\xE9");
  EXPECT_EQ(platform.files.content(logFile), "what the user wrote\n2025-03-14 09:26:53 +0000 one\n");
  platform.files.remove(logFile);
  platform.clock.time = {};
  controller.log("two");
  EXPECT_EQ(platform.files.content(logFile), "1970-01-01 00:00:00 +0000 two\n");
}

}  // namespace
}  // namespace tavelle
