#include "platform/linux/toolkit/gtk_alerts.h"

#include <glibmm/markup.h>
#include <gtkmm/dialog.h>
#include <gtkmm/grid.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>

#include <algorithm>
#include <cmath>

#include "platform/linux/handles.h"
#include "platform/linux/toolkit/present.h"

namespace tavelle {
namespace {

constexpr double iconSide = 64;

/// The picture with its longer side that of an icon; none when it can't be loaded.
Glib::RefPtr<Gdk::Pixbuf> iconOf(const std::filesystem::path& file) {
  const auto loaded = adopt(gdk_pixbuf_new_from_file(file.c_str(), nullptr));
  if (!loaded) return {};
  const auto upright = adopt(gdk_pixbuf_apply_embedded_orientation(loaded.get()));
  const double width = gdk_pixbuf_get_width(upright.get());
  const double height = gdk_pixbuf_get_height(upright.get());
  const double scale = iconSide / std::max({width, height, 1.0});
  const auto side = [&](double length) { return std::max(1, static_cast<int>(std::lround(length * scale))); };
  return Glib::wrap(gdk_pixbuf_scale_simple(upright.get(), side(width), side(height), GDK_INTERP_BILINEAR));
}

/// The wallpaper's picture, else the usual sign for the style.
void showIcon(Gtk::Image& image, const Alert& alert) {
  if (const auto icon = alert.icon ? iconOf(*alert.icon) : Glib::RefPtr<Gdk::Pixbuf>()) {
    image.set(icon);
  } else {
    image.set_from_icon_name(alert.style == Alert::Style::warning ? "dialog-warning" : "dialog-information",
                             Gtk::ICON_SIZE_DIALOG);
  }
  image.set_valign(Gtk::ALIGN_START);
}

void setUp(Gtk::Label& label) {
  label.set_line_wrap();
  label.set_max_width_chars(50);
  label.set_xalign(0);
  label.set_selectable(false);
}

}  // namespace

std::optional<std::size_t> GtkAlerts::run(const Alert& alert) {
  if (ended_) return std::nullopt;
  Gtk::Dialog dialog("Tavelle", true);
  Gtk::Image icon;
  showIcon(icon, alert);
  Gtk::Label message;
  setUp(message);
  message.set_markup("<b><big>" + Glib::Markup::escape_text(alert.message) + "</big></b>");
  Gtk::Label information(alert.information);
  setUp(information);

  Gtk::Grid grid;
  grid.set_border_width(9);
  grid.set_column_spacing(18);
  grid.set_row_spacing(9);
  grid.attach(icon, 0, 0, 1, 2);
  grid.attach(message, 1, 0, 1, 1);
  grid.attach(information, 1, 1, 1, 1);
  dialog.get_content_area()->add(grid);

  const auto buttons = alert.buttons.empty() ? std::vector<std::string>{"OK"} : alert.buttons;
  // The button that answers the Return key has its place at the end.
  for (std::size_t i = buttons.size(); i > 0; --i) dialog.add_button(buttons[i - 1], static_cast<int>(i - 1));
  dialog.set_default_response(0);
  atk_object_set_role(gtk_widget_get_accessible(GTK_WIDGET(dialog.gobj())), ATK_ROLE_ALERT);
  dialog.set_border_width(9);
  dialog.set_resizable(false);
  dialog.set_position(Gtk::WIN_POS_CENTER);
  dialog.set_keep_above(true);
  dialog.show_all();
  dialog.get_widget_for_response(0)->grab_focus();
  presentNow(GTK_WINDOW(dialog.gobj()));
  const int answer = dialog.run();
  return answer < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(answer));
}

}  // namespace tavelle
