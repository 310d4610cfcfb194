// A whole look at what hides the desktops, on the display that DISPLAY names, beside a mere question for each window's
// size, one after the other. Without a display there is nothing to measure.

#include <benchmark/benchmark.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <memory>

#include "base/allocated.h"
#include "coverage/coverage.h"
#include "platform/linux/handles.h"
#include "platform/linux/modules.h"
#include "platform/screens.h"

namespace tavelle {
namespace {

void lookAtTheDesktop(benchmark::State& state, DesktopServices* desktop) {
  for (auto _ : state) {
    const auto windows = otherWindowRects(desktop->windowList(), getpid());
    for (const Screen& screen : desktop->screens().list()) benchmark::DoNotOptimize(coverage(screen, windows));
    state.counters["windows"] = static_cast<double>(windows.size());
  }
}

void askForEachSize(benchmark::State& state) {
  const std::unique_ptr<xcb_connection_t, FreeWith<xcb_disconnect>> connection(xcb_connect(nullptr, nullptr));
  const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
  const AllocatedPtr<xcb_query_tree_reply_t> tree(
      xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), root), nullptr));
  for (auto _ : state) {
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
      const auto cookie = xcb_get_geometry(connection.get(), xcb_query_tree_children(tree.get())[i]);
      const AllocatedPtr<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(connection.get(), cookie, nullptr));
    }
  }
}

/// Registers what needs a display where there is one.
const bool registered = [] {
  if (!hasDisplay()) return false;
  static const auto desktop = openDesktop();
  if (!desktop) return false;
  benchmark::RegisterBenchmark("lookAtTheDesktop", lookAtTheDesktop, desktop->get())->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("askForEachSize", askForEachSize)->Unit(benchmark::kMicrosecond);
  return true;
}();

}  // namespace
}  // namespace tavelle
