#include "platform/linux/display/connect_to_display.h"

#include <gdk/gdk.h>
#include <gtkmm/main.h>

#include "platform/linux/toolkit/monitors.h"
#include "platform/linux/wayland/wayland_server.h"
#include "platform/linux/x11/x11_server.h"

namespace tavelle {

Result<std::unique_ptr<DisplayServer>> connectToDisplay(const char* programName) {
  g_set_prgname(programName);
  const bool layers = compositorHasLayers();
  gdk_set_allowed_backends(layers ? "wayland,x11" : "x11");
  if (!gtk_init_check(nullptr, nullptr)) {
    return Error{layers ? "couldn't connect to a Wayland or X11 display" : "couldn't connect to an X11 display"};
  }
  Gtk::Main::init_gtkmm_internals();
  // The toolkit may have been told to prefer the other.
  GdkDisplay* const display = gdk_display_get_default();
  if (isWaylandDisplay(display)) return std::unique_ptr<DisplayServer>(std::make_unique<WaylandServer>(display));
  return std::unique_ptr<DisplayServer>(std::make_unique<X11Server>(display));
}

}  // namespace tavelle
