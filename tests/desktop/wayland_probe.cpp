// Prints how many windows the compositor tells of, at the start and whenever it says that something has changed. Ends
// with its input.

#include <glib-unix.h>
#include <gtk/gtk.h>

#include <iostream>

#include "platform/linux/desktop/wayland_windows.h"

int main(int count, char** arguments) {
  gtk_init(&count, &arguments);
  const auto windows = tavelle::waylandWindows(gdk_display_get_default());
  const auto print = [&] {
    const auto list = windows->onScreen();
    std::cout << (list ? static_cast<int>(list->size()) : -1) << std::endl;
  };
  const auto listening = windows->onChange(print);
  print();
  constexpr auto end = [](int, GIOCondition, gpointer) -> gboolean {
    gtk_main_quit();
    return G_SOURCE_REMOVE;
  };
  g_unix_fd_add(0, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP), end, nullptr);
  gtk_main();
  return 0;
}
