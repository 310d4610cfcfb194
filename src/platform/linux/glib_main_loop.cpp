#include "platform/linux/glib_main_loop.h"

#include <glib.h>

#include <algorithm>
#include <cmath>
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

}  // namespace

Registration GLibMainLoop::after(double seconds, std::function<void()> action) {
  const auto timer = std::make_shared<Timer>();
  timer->action = std::move(action);
  const double milliseconds = std::ceil(std::clamp(seconds * 1000, 0.0, double{G_MAXINT}));
  timer->source = g_timeout_add_full(
      G_PRIORITY_DEFAULT, static_cast<guint>(milliseconds), fire, std::make_unique<SharedTimer>(timer).release(),
      [](gpointer data) { std::unique_ptr<SharedTimer>(static_cast<SharedTimer*>(data)).reset(); });
  return Registration([timer] {
    if (timer->source != 0) g_source_remove(std::exchange(timer->source, 0));
  });
}

}  // namespace tavelle
