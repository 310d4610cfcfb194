#include <glib.h>
#include <gtest/gtest.h>

#include "fakes/fake_main_loop.h"
#include "platform/linux/glib_main_loop.h"
#include "platform/pending_calls.h"

namespace tavelle {
namespace {

/// `wait` lets at least that many seconds pass.
void keepContract(MainLoop& loop, const std::function<void(double)>& wait) {
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
  keepContract(fake, [&](double seconds) { fake.turn(seconds); });
  GLibMainLoop real;
  keepContract(real, [](double seconds) {
    const gint64 end = g_get_monotonic_time() + static_cast<gint64>(seconds * G_USEC_PER_SEC);
    while (g_get_monotonic_time() < end) g_main_context_iteration(nullptr, FALSE);
    // What a busy machine has kept until then.
    while (g_main_context_iteration(nullptr, FALSE)) continue;
  });
}

}  // namespace
}  // namespace tavelle
