#include "platform/linux/desktop/display_server.h"

#include <gdk/gdk.h>
#include <gtkmm/main.h>

#include "platform/linux/desktop/x11_server.h"

namespace tavelle {

Result<std::unique_ptr<DisplayServer>> connectToDisplay(const char* programName) {
  g_set_prgname(programName);
  gdk_set_allowed_backends("x11");
  if (!gtk_init_check(nullptr, nullptr)) return Error{"couldn't connect to an X11 display"};
  Gtk::Main::init_gtkmm_internals();
  return std::unique_ptr<DisplayServer>(std::make_unique<X11Server>());
}

}  // namespace tavelle
