#include <gtest/gtest.h>

#include "fakes/fake_platform.h"
#include "model/controller.h"

namespace tavelle {
namespace {

constexpr auto logFile = "/home/Library/Logs/Tavelle.log";

TEST(EventLog, AppendsWithTheTimeInUtcAndStartsAgainWhenTheFileIsTakenAway) {
  FakePlatform platform;
  platform.files.put(logFile, "what the user wrote\n");
  // 1741944413 is 2025-03-14 09:26:53 UTC.
  platform.clock.time = WallTime(std::chrono::seconds(1741944413) + std::chrono::milliseconds(999));
  Controller controller(platform);
  controller.log("one");
  controller.log("two");
  EXPECT_EQ(platform.files.content(logFile),
            "what the user wrote\n2025-03-14 09:26:53 +0000 one\n2025-03-14 09:26:53 +0000 two\n");
  platform.files.remove(logFile);
  platform.clock.time = {};
  controller.log("three");
  EXPECT_EQ(platform.files.content(logFile), "1970-01-01 00:00:00 +0000 three\n");
  platform.files.remove("/home/Library/Logs");
  controller.log("lost");
  EXPECT_FALSE(platform.files.exists("/home/Library/Logs"));
}

TEST(EventLog, StaysText) {
  FakePlatform platform;
  Controller(platform).log("caf\xE9");
  EXPECT_EQ(platform.files.content(logFile), "");
}

}  // namespace
}  // namespace tavelle
