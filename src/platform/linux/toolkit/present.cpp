#include "platform/linux/toolkit/present.h"

#include <gdk/gdkx.h>

namespace tavelle {

void presentNow(GtkWindow* window) {
  GdkWindow* const surface = gtk_widget_get_window(GTK_WIDGET(window));
  // A window manager on X11 holds back what it takes for older than the user's last doing, so it is told the time.
  const guint32 time = GDK_IS_X11_WINDOW(surface) ? gdk_x11_get_server_time(surface) : GDK_CURRENT_TIME;
  gtk_window_present_with_time(window, time);
}

}  // namespace tavelle
