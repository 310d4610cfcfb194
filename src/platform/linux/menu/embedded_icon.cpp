#include "platform/linux/menu/embedded_icon.h"

#include <gtk/gtkx.h>

#include <memory>
#include <utility>

#include "platform/linux/menu/program_icon.h"

// Deprecated in favour of the session bus, and still the toolkit's own way into trays that are not on the bus.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

namespace tavelle {
namespace {

using Clicked = std::function<void()>;

void call(gpointer data) {
  // A copy, since it may destroy the icon.
  const auto clicked = *static_cast<const Clicked*>(data);
  clicked();
}

/// The picture that the toolkit puts into the tray; none when this version of it keeps it elsewhere.
GtkImage* pictureOf(GtkStatusIcon* icon) {
  const std::unique_ptr<GList, FreeWith<g_list_free>> windows(gtk_window_list_toplevels());
  const char* const title = gtk_status_icon_get_title(icon);
  for (GList* each = windows.get(); each; each = each->next) {
    auto* const window = static_cast<GtkWindow*>(each->data);
    if (!GTK_IS_PLUG(window) || g_strcmp0(gtk_window_get_title(window), title) != 0) continue;
    GtkWidget* const child = gtk_bin_get_child(GTK_BIN(window));
    if (GTK_IS_IMAGE(child)) return GTK_IMAGE(child);
  }
  return nullptr;
}

/// Left to itself, the toolkit takes the nearest of its usual sizes, and the tray cuts off what is too large.
gboolean fillSize(GtkStatusIcon* icon, gint size, gpointer /*data*/) {
  GtkImage* const picture = pictureOf(icon);
  if (!picture) return FALSE;
  gtk_image_set_from_icon_name(picture, symbolicIconName, GTK_ICON_SIZE_MENU);
  gtk_image_set_pixel_size(picture, size);
  return TRUE;
}

}  // namespace

EmbeddedIcon::EmbeddedIcon(Clicked clicked)
    : clicked_(std::move(clicked)), icon_(adopt(gtk_status_icon_new_from_icon_name(symbolicIconName))) {
  gtk_status_icon_set_name(icon_.get(), "tavelle");
  gtk_status_icon_set_title(icon_.get(), "Tavelle");
  gtk_status_icon_set_tooltip_text(icon_.get(), "Tavelle");
  g_signal_connect(icon_.get(), "size-changed", G_CALLBACK(fillSize), nullptr);
  g_signal_connect(icon_.get(), "activate", G_CALLBACK(+[](GtkStatusIcon*, gpointer it) { call(it); }), &clicked_);
  g_signal_connect(icon_.get(), "popup-menu", G_CALLBACK(+[](GtkStatusIcon*, guint, guint, gpointer it) { call(it); }),
                   &clicked_);
}

EmbeddedIcon::~EmbeddedIcon() {
  g_signal_handlers_disconnect_by_data(icon_.get(), &clicked_);
  gtk_status_icon_set_visible(icon_.get(), FALSE);
}

std::optional<Gdk::Rectangle> EmbeddedIcon::place() const {
  GdkRectangle area{};
  if (!gtk_status_icon_is_embedded(icon_.get()) ||
      !gtk_status_icon_get_geometry(icon_.get(), nullptr, &area, nullptr)) {
    return std::nullopt;
  }
  return Gdk::Rectangle(area.x, area.y, area.width, area.height);
}

}  // namespace tavelle

G_GNUC_END_IGNORE_DEPRECATIONS
