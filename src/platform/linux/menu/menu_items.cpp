#include "platform/linux/menu/menu_items.h"

#include <glibmm/main.h>
#include <gtkmm/checkmenuitem.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/label.h>
#include <gtkmm/separatormenuitem.h>
#include <gtkmm/stylecontext.h>
#include <sigc++/connection.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/linux/handles.h"
#include "platform/status_item.h"

namespace tavelle {
namespace {

// In the rows' own points, of which 4 are 3 of CSS's, since they grow with the desktop's text as those do.
// A row's text begins 26 points from the left: the highlight's margin of 5, and 21 for the check mark, whose margin
// makes up for the fractions of pixels that the toolkit cuts off.
constexpr auto style = R"(
.tavelle-menu { padding: 3.75pt 0; }
.tavelle-menu menuitem {
  min-height: 16.5pt; padding: 0 3.75pt; margin: 0 3.75pt; border-radius: 3.75pt;
}
.tavelle-menu menuitem check, .tavelle-menu menuitem check:dir(ltr), .tavelle-menu menuitem check:dir(rtl) {
  min-width: 9pt; min-height: 9pt; margin: 0 2.2pt 0 0; padding: 0; border-width: 1px;
}
.tavelle-menu menuitem check {
  -gtk-icon-source: none; border-color: transparent; background: none; box-shadow: none; color: inherit; -gtk-icon-shadow: none;
}
.tavelle-menu menuitem check:checked { -gtk-icon-source: -gtk-icontheme("object-select-symbolic"); }
.tavelle-menu separator { margin: 3.75pt 9pt; }
.tavelle-menu .tavelle-heading { font-weight: bold; }
.tavelle-menu .tavelle-heading label { font-size: 90%; }
)";

/// Less important text is paler, with a contrast of 4.5 and more (WCAG 2.1, AA) to the menus of the usual themes.
constexpr double secondaryOpacity = 0.72;

/// Dots per inch of a desktop that leaves the size of its text as it is.
constexpr double unscaledDpi = 96;

using RgbaPtr = std::unique_ptr<GdkRGBA, FreeWith<gdk_rgba_free>>;
using FontDescriptionPtr = std::unique_ptr<PangoFontDescription, FreeWith<pango_font_description_free>>;

/// As drawn on what lies behind it.
Color colorOf(GtkStyleContext* context, GtkStateFlags state, const char* property) {
  GdkRGBA* found = nullptr;
  gtk_style_context_get(context, state, property, &found, nullptr);
  const RgbaPtr color(found);
  return color ? Color{color->red, color->green, color->blue, color->alpha} : Color{};
}

/// The background of the item under the pointer. Some themes paint an image there; then the one of selected text.
Color accentOf(GtkStyleContext* context) {
  const Color background = colorOf(context, GTK_STATE_FLAG_PRELIGHT, "background-color");
  GdkRGBA selected{};
  if (background.opacity > 0 || !gtk_style_context_lookup_color(context, "theme_selected_bg_color", &selected)) {
    return background;
  }
  return {selected.red, selected.green, selected.blue, selected.alpha};
}

/// In the list's points.
TextFont fontOf(GtkStyleContext* context, double scale) {
  PangoFontDescription* found = nullptr;
  gtk_style_context_get(context, GTK_STATE_FLAG_NORMAL, "font", &found, nullptr);
  const FontDescriptionPtr font(found);
  const double size = static_cast<double>(pango_font_description_get_size(font.get())) / PANGO_SCALE;
  constexpr double pointsPerInch = 72;
  const bool inPixels = pango_font_description_get_size_is_absolute(font.get());
  return {pango_font_description_get_family(font.get()), inPixels ? size / scale : size * unscaledDpi / pointsPerInch};
}

/// A submenu whose items come as they are needed: there may be one for each of thousands of wallpapers, and the toolkit
/// takes seconds for so many.
class Submenu final : public Gtk::Menu {
 public:
  /// `items` must outlive this.
  explicit Submenu(const MenuItems& items) : items_(items) {
    useMenuStyle(*this);
    signal_map().connect([this] {
      adding_ = Glib::signal_timeout().connect([this] { return add(furtherItems); }, furtherInterval.count());
    });
    signal_unmap().connect([this] { adding_.disconnect(); });
  }
  Submenu(const Submenu&) = delete;
  Submenu& operator=(const Submenu&) = delete;
  ~Submenu() override {
    preparing_.disconnect();
    adding_.disconnect();
  }

  /// Before it opens: as many as the highest screen shows.
  void prepare() {
    if (added_ == 0) add(firstItems);
  }
  /// As soon as there is nothing else to do: assistive technology looks into a menu without opening it.
  void prepareWhenIdle() {
    preparing_ = Glib::signal_idle().connect(
        [this] {
          prepare();
          return false;
        },
        Glib::PRIORITY_LOW);
  }

 private:
  static constexpr std::size_t firstItems = 120;
  static constexpr std::size_t furtherItems = 20;
  static constexpr std::chrono::duration<unsigned, std::milli> furtherInterval{15};

  /// Whether there are more to add.
  bool add(std::size_t count) {
    for (const std::size_t end = std::min(items_.size(), added_ + count); added_ < end; ++added_) {
      auto* const item = Gtk::manage(makeMenuItem(items_[added_]).release());
      append(*item);
      item->show_all();
    }
    return added_ < items_.size();
  }

  const MenuItems& items_;
  std::size_t added_ = 0;
  sigc::connection preparing_;
  sigc::connection adding_;
};

}  // namespace

void useMenuStyle(Gtk::Menu& menu) { menu.get_style_context()->add_class("tavelle-menu"); }

void installMenuStyle() {
  const auto provider = Gtk::CssProvider::create();
  provider->load_from_data(style);
  Gtk::StyleContext::add_provider_for_screen(Gdk::Screen::get_default(), provider,
                                             GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

double textScale(const Gtk::Widget& widget) {
  const double dotsPerInch = widget.get_screen()->get_resolution();
  return dotsPerInch > 0 ? dotsPerInch / unscaledDpi : 1;
}

MenuTheme menuTheme(Gtk::MenuItem& item) {
  GtkStyleContext* const context = item.get_style_context()->gobj();
  MenuTheme theme{.font = fontOf(context, textScale(item)),
                  .accent = accentOf(context),
                  .selectedText = colorOf(context, GTK_STATE_FLAG_PRELIGHT, "color"),
                  .label = colorOf(context, GTK_STATE_FLAG_NORMAL, "color"),
                  .secondaryLabel = colorOf(context, GTK_STATE_FLAG_NORMAL, "color")};
  theme.secondaryLabel.opacity *= secondaryOpacity;
  return theme;
}

std::unique_ptr<Gtk::MenuItem> makeMenuItem(const MenuItem& item) {
  if (item.kind == MenuItem::Kind::separator) return std::make_unique<Gtk::SeparatorMenuItem>();
  std::unique_ptr<Gtk::MenuItem> made;
  if (item.checked) {
    auto check = std::make_unique<Gtk::CheckMenuItem>(item.title);
    check->set_active(*item.checked);
    made = std::move(check);
  } else {
    made = std::make_unique<Gtk::MenuItem>(item.title);
  }
  // A long name must not make the menu wider than the screen. Names that begin alike differ at their end.
  auto& label = dynamic_cast<Gtk::Label&>(*made->get_child());
  label.set_ellipsize(Pango::ELLIPSIZE_MIDDLE);
  label.set_max_width_chars(50);
  if (item.kind == MenuItem::Kind::heading) made->get_style_context()->add_class("tavelle-heading");
  if (!item.submenu.empty()) {
    auto* const submenu = Gtk::make_managed<Submenu>(item.submenu);
    made->set_submenu(*submenu);
    made->signal_select().connect([submenu] { submenu->prepare(); });
    made->signal_map().connect([submenu] { submenu->prepareWhenIdle(); });
  } else if (item.action) {
    // Later, since it may open a dialog, and the menu that the item belongs to may be gone by then.
    made->signal_activate().connect([action = item.action] { Glib::signal_idle().connect_once(action); });
  } else {
    made->set_sensitive(false);
  }
  return made;
}

}  // namespace tavelle
