#include "platform/linux/toolkit/gtk_guide_window.h"

#include <gtkmm/box.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/eventbox.h>
#include <gtkmm/gesturedrag.h>
#include <gtkmm/headerbar.h>
#include <gtkmm/overlay.h>
#include <gtkmm/settings.h>
#include <gtkmm/window.h>

#include <cmath>
#include <string>

#include "platform/linux/toolkit/present.h"
#include "platform/linux/toolkit/web_widget.h"

namespace tavelle {
namespace {

/// Buttons of a grey that can be read on light and dark pages alike: the page knows its background, the theme doesn't.
/// Where nobody draws shadows, a thin line in place of the broad frame that is made to be grasped for resizing.
constexpr auto style = R"(
.guide.solid-csd decoration { margin: 0; padding: 0; border: 1px solid mix(@theme_bg_color, @theme_fg_color, 0.35);
  border-radius: 0; box-shadow: none; }
.drag-strip { min-height: 0; padding: 0 4px; background: none; border: none; box-shadow: none; }
.drag-strip button.titlebutton { min-width: 24px; min-height: 24px; padding: 0; margin: 2px 0; color: #808080;
  background: none; border: none; border-radius: 12px; box-shadow: none; text-shadow: none; -gtk-icon-shadow: none; }
.drag-strip button.titlebutton:hover, .drag-strip button.titlebutton:focus { background: alpha(#808080, 0.22); }
.drag-strip button.titlebutton:active { background: alpha(#808080, 0.4); }
.drag-strip button.titlebutton:backdrop { opacity: 0.6; }
)";

/// A transparent strip by which its window is dragged. It carries the buttons that the user's desktop gives to windows,
/// on the side where it has them.
class DragStrip final : public Gtk::EventBox {
 public:
  explicit DragStrip(int height) {
    set_visible_window(false);
    set_valign(Gtk::ALIGN_START);
    set_size_request(-1, height);
    bar_.get_style_context()->add_class("drag-strip");
    bar_.get_style_context()->remove_class("titlebar");
    bar_.set_show_close_button();
    bar_.set_custom_title(noTitle_);
    add(bar_);
  }

 private:
  bool on_button_press_event(GdkEventButton* event) override {
    auto* const window = dynamic_cast<Gtk::Window*>(get_toplevel());
    if (!window || event->type != GDK_BUTTON_PRESS || event->button != GDK_BUTTON_PRIMARY) return false;
    window->begin_move_drag(static_cast<int>(event->button), static_cast<int>(event->x_root),
                            static_cast<int>(event->y_root), event->time);
    return true;
  }

  Gtk::HeaderBar bar_;
  Gtk::Box noTitle_;
};

/// Whether the key press is Control and "w", whatever else is held down but Shift.
bool isCloseKey(const GdkEventKey& event) {
  if (!(event.state & GDK_CONTROL_MASK)) return false;
  GdkKeymap* const keymap = gdk_keymap_get_for_display(gdk_window_get_display(event.window));
  const auto keyIn = [&](int group) {
    guint key = 0;
    gdk_keymap_translate_keyboard_state(keymap, event.hardware_keycode, GdkModifierType(event.state & GDK_SHIFT_MASK),
                                        group, &key, nullptr, nullptr, nullptr);
    return key;
  };
  const guint key = keyIn(event.group);
  // A keyboard of another script has its Latin letters on the first layout.
  return (gdk_keyval_to_unicode(key) > 0x7F ? keyIn(0) : key) == GDK_KEY_w;
}

class GtkGuideWindow final : public GuideWindow {
 public:
  GtkGuideWindow(const GuideWindows::Settings& settings, WebWidget& content, GuideWindowDelegate& delegate)
      : delegate_(delegate),
        content_(content),
        page_(Glib::wrap(content.widget())),
        strip_(settings.dragStrip),
        drag_(Gtk::GestureDrag::create(*page_)) {
    window_.set_title(settings.title);
    window_.set_resizable(false);
    window_.set_position(Gtk::WIN_POS_CENTER);
    useStyle();
    // A title bar that is never shown: the frame and the shadow are the toolkit's, all of the inside is the page's.
    window_.set_titlebar(noTitleBar_);
    noTitleBar_.set_no_show_all();
    noTitleBar_.hide();
    // A page asks for as much room as all of its text takes; laid over something else it is not asked.
    room_.set_size_request(settings.width, settings.height);
    contentArea_.add(room_);
    contentArea_.add_overlay(*page_);
    contentArea_.add_overlay(strip_);
    window_.add(contentArea_);
    contentArea_.show_all();
    connectSignals();
  }

  GtkGuideWindow(const GtkGuideWindow&) = delete;
  GtkGuideWindow& operator=(const GtkGuideWindow&) = delete;
  ~GtkGuideWindow() override { Gtk::StyleContext::remove_provider_for_screen(window_.get_screen(), style_); }

  void show() override {
    window_.show();
    page_->grab_focus();
    presentNow(window_.gobj());
  }

  bool isVisible() const override { return window_.get_visible(); }

  void performClose() override {
    window_.hide();
    delegate_.guideWindowWillClose(*this);
  }

 private:
  void useStyle() {
    style_->load_from_data(style);
    Gtk::StyleContext::add_provider_for_screen(window_.get_screen(), style_, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    window_.get_style_context()->add_class("guide");
  }

  void connectSignals() {
    window_.signal_delete_event().connect([this](GdkEventAny*) {
      performClose();
      return true;
    });
    window_.signal_key_press_event().connect(
        [this](GdkEventKey* event) {
          if (!isCloseKey(*event)) return false;
          performClose();
          return true;
        },
        false);
    drag_->set_propagation_phase(Gtk::PHASE_CAPTURE);
    drag_->signal_drag_begin().connect([this](double x, double y) { lookWhatIsAt(x, y); });
    drag_->signal_drag_update().connect([this](double x, double y) { dragBy(x, y); });
  }

  /// Asks the page whether the pointer is on something that answers clicks.
  void lookWhatIsAt(double x, double y) {
    onBackground_ = false;
    const std::string place = std::to_string(std::lround(x)) + "," + std::to_string(std::lround(y));
    content_.evaluate("!document.elementFromPoint(" + place + ")?.closest('a,button,input,label,[role]')",
                      [this](const Result<ScriptValue>& answer) {
                        const bool* const background = answer ? std::get_if<bool>(&answer->value) : nullptr;
                        onBackground_ = background && *background;
                      });
  }

  void dragBy(double x, double y) {
    double startX = 0;
    double startY = 0;
    if (!onBackground_ || !drag_->get_start_point(startX, startY)) return;
    const int threshold = window_.get_settings()->property_gtk_dnd_drag_threshold().get_value();
    if (std::hypot(x, y) < threshold) return;
    int rootX = 0;
    int rootY = 0;
    const GdkEvent* const event = drag_->get_last_event(nullptr);
    // From where it was pressed, so that the page stays where it is under the pointer.
    page_->get_window()->get_root_coords(static_cast<int>(startX), static_cast<int>(startY), rootX, rootY);
    window_.begin_move_drag(GDK_BUTTON_PRIMARY, rootX, rootY, gdk_event_get_time(event));
    drag_->reset();
  }

  GuideWindowDelegate& delegate_;
  WebWidget& content_;
  Gtk::Widget* const page_;
  const Glib::RefPtr<Gtk::CssProvider> style_ = Gtk::CssProvider::create();
  Gtk::Box noTitleBar_;
  Gtk::Window window_;
  Gtk::Overlay contentArea_;
  Gtk::Box room_;
  DragStrip strip_;
  Glib::RefPtr<Gtk::GestureDrag> drag_;
  bool onBackground_ = false;
};

}  // namespace

std::unique_ptr<GuideWindow> GtkGuideWindows::make(const Settings& settings, WebView& content,
                                                   GuideWindowDelegate& delegate) {
  return std::make_unique<GtkGuideWindow>(settings, dynamic_cast<WebWidget&>(content), delegate);
}

}  // namespace tavelle
