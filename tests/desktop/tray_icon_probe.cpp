// Shows the icon in the panel and prints each click, with the place that it is told. Reads commands, one a line:
// "click" clicks the icon, "remove" takes it away. Ends with its input.

#include <glib-unix.h>
#include <gtk/gtk.h>
#include <gtkmm/main.h>

#include <iostream>
#include <memory>
#include <string>

#include "platform/linux/desktop/tray_icon.h"
#include "platform/linux/standard_paths.h"

namespace {

struct Probe {
  std::unique_ptr<tavelle::TrayIcon> icon;
};

void printClick(const std::optional<Gdk::Rectangle>& place) {
  std::cout << "clicked";
  if (place) {
    for (const int each : {place->get_x(), place->get_y(), place->get_width(), place->get_height()}) {
      std::cout << ' ' << each;
    }
  }
  std::cout << std::endl;
}

gboolean readCommand(int /*descriptor*/, GIOCondition /*condition*/, gpointer data) {
  auto& probe = *static_cast<Probe*>(data);
  std::string command;
  if (!std::getline(std::cin, command)) {
    gtk_main_quit();
    return G_SOURCE_REMOVE;
  }
  if (command == "click") probe.icon->performClick();
  if (command == "remove") probe.icon.reset();
  return G_SOURCE_CONTINUE;
}

}  // namespace

int main(int count, char** arguments) {
  gtk_init(&count, &arguments);
  Gtk::Main::init_gtkmm_internals();
  Probe probe{std::make_unique<tavelle::TrayIcon>(tavelle::iconFolder(), printClick)};
  g_unix_fd_add(0, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP), readCommand, &probe);
  gtk_main();
  return 0;
}
