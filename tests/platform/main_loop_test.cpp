#include <glib.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "fakes/fake_main_loop.h"
#include "platform/linux/glib_main_loop.h"
#include "platform/pending_calls.h"

namespace tavelle {
namespace {

/// Lets a loop run for at least so much time.
using Wait = std::function<void(std::chrono::milliseconds)>;

void keepContract(MainLoop& loop, const Wait& wait) {
  std::string calls;
  auto soon = loop.after(10ms, [&] { calls += "a"; });
  auto later = loop.after(40ms, [&] { calls += "b"; });
  auto dropped = loop.after(20ms, [&] { calls += "x"; });
  EXPECT_EQ(calls, "") << "never inside the call";
  dropped.cancel();
  wait(100ms);
  EXPECT_EQ(calls, "ab");
  soon.cancel();
  soon = loop.after(0ms, [&] {
    // A callback may drop its own handle, and start another.
    soon.cancel();
    soon = loop.after(0ms, [&] { calls += "d"; });
    calls += "c";
  });
  wait(50ms);
  EXPECT_EQ(calls, "abcd");
  int ticks = 0;
  Registration clock;
  clock = loop.repeat(20ms, 10ms, [&] {
    if (++ticks == 3) clock.cancel();
  });
  EXPECT_EQ(ticks, 0) << "never inside the call";
  for (int i = 0; i < 100 && ticks < 3; ++i) wait(100ms);
  wait(100ms);
  EXPECT_EQ(ticks, 3) << "again and again until dropped, also from inside";
  {
    PendingCalls pending(loop);
    pending.soon([&] { calls += "e"; });
    wait(50ms);
    pending.soon([&] { calls += "x"; });
  }
  wait(50ms);
  EXPECT_EQ(calls, "abcde") << "what still waits goes with the object";
}

void runLoop(std::chrono::milliseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (std::chrono::steady_clock::now() < end) g_main_context_iteration(nullptr, FALSE);
  // What a busy machine has kept until then.
  while (g_main_context_iteration(nullptr, FALSE)) continue;
}

TEST(MainLoop, KeepsItsContract) {
  FakeMainLoop fake;
  keepContract(fake, [&](std::chrono::milliseconds time) { fake.turn(time); });
  GLibMainLoop real;
  keepContract(real, runLoop);
}

TEST(MainLoop, MakesUpForNothingThatABusyLoopHasMissed) {
  GLibMainLoop loop;
  int ticks = 0;
  const auto clock = loop.repeat(20ms, 10ms, [&] { ++ticks; });
  std::this_thread::sleep_for(400ms);
  runLoop(0ms);
  // On a busy machine some more may fall due before the loop gets to rest.
  EXPECT_TRUE(ticks > 0 && ticks < 10) << ticks;
}

}  // namespace
}  // namespace tavelle
