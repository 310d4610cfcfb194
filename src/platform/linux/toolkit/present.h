#pragma once

#include <gtk/gtk.h>

namespace tavelle {

/// Brings a window that is shown to the front, with the focus, as something that the user has just asked for.
void presentNow(GtkWindow* window);

}  // namespace tavelle
