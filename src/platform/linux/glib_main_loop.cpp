#include "platform/linux/glib_main_loop.h"

#include <glib.h>

#include <algorithm>
#include <chrono>
#include <memory>

namespace tavelle {
namespace {

struct Timer {
  std::function<void()> action;
  /// 0 when it no longer waits.
  guint source = 0;
};

using SharedTimer = std::shared_ptr<Timer>;

gboolean fire(gpointer data) {
  const SharedTimer timer = *static_cast<SharedTimer*>(data);
  timer->source = 0;
  timer->action();
  return G_SOURCE_REMOVE;
}

/// A source that comes due again and again. The loop sleeps until the end of the tolerance, but when something else has
/// it awake earlier, the source takes its turn then. Times are GLib's monotonic ones, in microseconds.
struct RepeatingSource {
  GSource base;
  gint64 interval;
  gint64 tolerance;
  gint64 due;
};

RepeatingSource& repeating(GSource* source) { return *reinterpret_cast<RepeatingSource*>(source); }

gboolean isDue(GSource* source) { return g_source_get_time(source) >= repeating(source).due; }

gboolean prepare(GSource* source, gint* timeout) {
  const auto& [base, interval, tolerance, due] = repeating(source);
  const gint64 left = due + tolerance - g_source_get_time(source);
  *timeout = static_cast<gint>(std::clamp<gint64>((left + 999) / 1000, 0, G_MAXINT));
  return isDue(source);
}

gboolean dispatch(GSource* source, GSourceFunc callback, gpointer data) {
  auto& [base, interval, tolerance, due] = repeating(source);
  due += interval * ((g_source_get_time(source) - due) / interval + 1);
  return callback(data);
}

gint64 microseconds(std::chrono::microseconds duration) { return duration.count(); }

}  // namespace

Registration GLibMainLoop::after(std::chrono::milliseconds delay, std::function<void()> action) {
  const auto timer = std::make_shared<Timer>();
  timer->action = std::move(action);
  const auto milliseconds = std::clamp<std::chrono::milliseconds::rep>(delay.count(), 0, G_MAXINT);
  timer->source = g_timeout_add_full(
      G_PRIORITY_DEFAULT, static_cast<guint>(milliseconds), fire, std::make_unique<SharedTimer>(timer).release(),
      [](gpointer data) { std::unique_ptr<SharedTimer>(static_cast<SharedTimer*>(data)).reset(); });
  return Registration([timer] {
    if (timer->source != 0) g_source_remove(std::exchange(timer->source, 0));
  });
}

Registration GLibMainLoop::repeat(std::chrono::milliseconds interval, std::chrono::milliseconds tolerance,
                                  std::function<void()> action) {
  // GLib asks for what it could write to, and never does.
  static GSourceFuncs repeatingFunctions{prepare, isDue, dispatch, nullptr, nullptr, nullptr};
  GSource* const source = g_source_new(&repeatingFunctions, sizeof(RepeatingSource));
  auto& timing = repeating(source);
  timing.interval = std::max<gint64>(1, microseconds(interval));
  timing.tolerance = microseconds(tolerance);
  timing.due = g_get_monotonic_time() + timing.interval;
  using Action = std::function<void()>;
  g_source_set_callback(
      source,
      [](gpointer data) -> gboolean {
        (*static_cast<Action*>(data))();
        return G_SOURCE_CONTINUE;
      },
      std::make_unique<Action>(std::move(action)).release(),
      [](gpointer data) { std::unique_ptr<Action>(static_cast<Action*>(data)).reset(); });
  g_source_attach(source, nullptr);
  return Registration([source] {
    g_source_destroy(source);
    g_source_unref(source);
  });
}

}  // namespace tavelle
