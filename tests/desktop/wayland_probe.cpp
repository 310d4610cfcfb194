// Prints what the compositor tells of monitors and windows, at the start and whenever it says that something has
// changed: a line with each monitor's name and place and then the number of windows. Ends with its input.

#include <glib-unix.h>
#include <gtk/gtk.h>

#include <iostream>

#include "platform/linux/desktop/display_server.h"
#include "platform/screens.h"
#include "platform/window_list.h"

int main() {
  const auto server = tavelle::connectToDisplay("probe");
  if (!server) return 1;
  auto& screens = (*server)->screens();
  const auto print = [&] {
    for (const auto& each : screens.list()) {
      const auto& [x, y, width, height] = each.bounds;
      std::cout << each.name << ' ' << x << ' ' << y << ' ' << width << ' ' << height << ' ';
    }
    const auto windows = (*server)->windowList().onScreen();
    std::cout << (windows ? static_cast<int>(windows->size()) : -1) << std::endl;
  };
  const auto ofScreens = screens.onChange(print);
  const auto ofWindows = (*server)->onWindowEvent(print);
  print();
  constexpr auto end = [](int, GIOCondition, gpointer) -> gboolean {
    gtk_main_quit();
    return G_SOURCE_REMOVE;
  };
  g_unix_fd_add(0, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP), end, nullptr);
  gtk_main();
  return 0;
}
