#include <glib.h>
#include <gtest/gtest.h>

#include "fakes/fake_main_loop.h"
#include "platform/linux/glib_main_loop.h"
#include "platform/pending_calls.h"

namespace tavelle {
namespace {

/// `wait` lets at least that many seconds pass, and `block` does so without letting the loop run meanwhile.
void keepContract(MainLoop& loop, const std::function<void(double)>& wait, const std::function<void(double)>& block) {
  std::string calls;
  auto soon = loop.after(0.01, [&] { calls += "a"; });
  auto later = loop.after(0.04, [&] { calls += "b"; });
  auto dropped = loop.after(0.02, [&] { calls += "x"; });
  EXPECT_EQ(calls, "") << "never inside the call";
  dropped.cancel();
  wait(0.1);
  EXPECT_EQ(calls, "ab");
  soon.cancel();
  soon = loop.after(0, [&] {
    // A callback may drop its own handle, and start another.
    soon.cancel();
    soon = loop.after(0, [&] { calls += "d"; });
    calls += "c";
  });
  wait(0.05);
  EXPECT_EQ(calls, "abcd");
  int ticks = 0;
  Registration clock;
  clock = loop.repeat(0.02, 0.01, [&] {
    if (++ticks == 3) clock.cancel();
  });
  EXPECT_EQ(ticks, 0) << "never inside the call";
  for (int i = 0; i < 100 && ticks < 3; ++i) wait(0.1);
  wait(0.1);
  EXPECT_EQ(ticks, 3) << "again and again until dropped, also from inside";
  ticks = 0;
  clock = loop.repeat(0.02, 0.01, [&] { ++ticks; });
  block(0.4);
  wait(0);
  clock.cancel();
  // On a busy machine some more may fall due before the loop gets to rest.
  EXPECT_TRUE(ticks > 0 && ticks < 10) << ticks << " of the 20 that a busy loop has missed";
  {
    PendingCalls pending(loop);
    pending.after(0, [&] { calls += "e"; });
    pending.after(10, [&] { calls += "x"; });
    wait(0.05);
  }
  EXPECT_EQ(calls, "abcde");
  const auto goneWithScope = [&] { PendingCalls(loop).after(0, [&] { calls += "x"; }); };
  goneWithScope();
  wait(0.05);
  EXPECT_EQ(calls, "abcde");
}

TEST(MainLoop, KeepsItsContract) {
  FakeMainLoop fake;
  keepContract(
      fake, [&](double seconds) { fake.turn(seconds); }, [&](double seconds) { fake.block(seconds); });
  GLibMainLoop real;
  const auto microseconds = [](double seconds) { return static_cast<gint64>(seconds * G_USEC_PER_SEC); };
  const auto wait = [&](double seconds) {
    const gint64 end = g_get_monotonic_time() + microseconds(seconds);
    while (g_get_monotonic_time() < end) g_main_context_iteration(nullptr, FALSE);
    // What a busy machine has kept until then.
    while (g_main_context_iteration(nullptr, FALSE)) continue;
  };
  keepContract(real, wait, [&](double seconds) { g_usleep(static_cast<gulong>(microseconds(seconds))); });
}

}  // namespace
}  // namespace tavelle
