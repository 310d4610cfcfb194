#include "platform/linux/menu/program_icon.h"

#include <glibmm/error.h>
#include <gtkmm/icontheme.h>

#include <array>
#include <cstddef>
#include <string>

namespace tavelle {
namespace {

/// The sizes of panels' icons, as they are and on dense displays.
constexpr std::array sizes{16, 22, 24, 32, 48};

Glib::RefPtr<Gdk::Pixbuf> iconOfSize(int size) {
  try {
    const auto icon = Gtk::IconTheme::get_default()->load_icon(iconName, size, Gtk::ICON_LOOKUP_FORCE_SIZE);
    return icon && !icon->get_has_alpha() ? icon->add_alpha(false, 0, 0, 0) : icon;
  } catch (const Glib::Error&) {
    return {};
  }
}

}  // namespace

GVariant* iconPixmaps() {
  GVariantBuilder list;
  g_variant_builder_init(&list, G_VARIANT_TYPE("a(iiay)"));
  for (const int size : sizes) {
    const auto icon = iconOfSize(size);
    if (!icon) continue;
    std::string pixels;
    for (int y = 0; y < icon->get_height(); ++y) {
      const guint8* const row = icon->get_pixels() + static_cast<std::ptrdiff_t>(y) * icon->get_rowstride();
      for (const guint8* pixel = row; pixel != row + static_cast<std::ptrdiff_t>(4) * icon->get_width(); pixel += 4) {
        for (const int channel : {3, 0, 1, 2}) pixels += static_cast<char>(pixel[channel]);
      }
    }
    g_variant_builder_add(&list, "(ii@ay)", icon->get_width(), icon->get_height(),
                          g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, pixels.data(), pixels.size(), 1));
  }
  return g_variant_builder_end(&list);
}

}  // namespace tavelle
