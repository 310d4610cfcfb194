// Prints what the desktop tells of monitors and windows, at the start and whenever it says that something may have
// changed: a line with each monitor's name and place and then the number of windows, -1 where nobody tells. Ends with
// its input.

#include <glib-unix.h>

#include <iostream>
#include <memory>

#include "platform/linux/handles.h"
#include "platform/linux/modules.h"
#include "platform/screens.h"
#include "platform/window_list.h"
#include "platform/workspace.h"

int main() {
  const auto desktop = tavelle::openDesktop();
  if (!desktop) return 1;
  auto& screens = (*desktop)->screens();
  const auto print = [&] {
    for (const auto& each : screens.list()) {
      const auto& [x, y, width, height] = each.bounds;
      std::cout << each.name << ' ' << x << ' ' << y << ' ' << width << ' ' << height << ' ';
    }
    const auto windows = (*desktop)->windowList().onScreen();
    std::cout << (windows ? static_cast<int>(windows->size()) : -1) << std::endl;
  };
  const auto ofScreens = screens.onChange(print);
  const auto ofWindows = (*desktop)->workspace().onEvent(print);
  print();
  const std::unique_ptr<GMainLoop, tavelle::FreeWith<g_main_loop_unref>> loop(g_main_loop_new(nullptr, FALSE));
  constexpr auto end = [](int, GIOCondition, gpointer running) -> gboolean {
    g_main_loop_quit(static_cast<GMainLoop*>(running));
    return G_SOURCE_REMOVE;
  };
  g_unix_fd_add(0, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP), end, loop.get());
  g_main_loop_run(loop.get());
  return 0;
}
