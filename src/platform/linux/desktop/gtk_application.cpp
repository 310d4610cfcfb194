#include "platform/linux/desktop/gtk_application.h"

#include <glib-unix.h>
#include <glibmm/main.h>
#include <gtkmm/dialog.h>

#include <array>
#include <csignal>

namespace tavelle {
namespace {

/// Adds a command to the application's actions, by the type of its argument. What it does comes a little later: it may
/// ask the user something, and whoever has called must not wait for that.
struct ActionAdder {
  Gtk::Application& application;
  const std::string& name;

  void operator()(const std::function<void()>& perform) const {
    application.add_action(name, [perform] { Glib::signal_idle().connect_once(perform); });
  }

  template <typename Argument>
  void operator()(const std::function<void(Argument)>& perform) const {
    using Value = std::decay_t<Argument>;
    application.add_action_with_parameter(
        name, Glib::Variant<Value>::variant_type(), [perform](const Glib::VariantBase& argument) {
          const auto value = Glib::VariantBase::cast_dynamic<Glib::Variant<Value>>(argument).get();
          Glib::signal_idle().connect_once([perform, value] { perform(value); });
        });
  }

  void operator()(const std::function<void(const std::string&)>& perform) const {
    application.add_action_with_parameter(
        name, Glib::Variant<Glib::ustring>::variant_type(), [perform](const Glib::VariantBase& argument) {
          const auto value = Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::ustring>>(argument).get().raw();
          Glib::signal_idle().connect_once([perform, value] { perform(value); });
        });
  }
};

}  // namespace

GtkApplication::GtkApplication(const char* id, std::function<void()> onTerminate)
    : application_(Gtk::Application::create(id)), onTerminate_(std::move(onTerminate)) {}

int GtkApplication::run(ApplicationDelegate& delegate) {
  application_->signal_activate().connect([this, &delegate] { activate(delegate); });
  const auto end = [](gpointer self) -> gboolean {
    static_cast<GtkApplication*>(self)->terminate();
    return G_SOURCE_CONTINUE;
  };
  const std::array signals{g_unix_signal_add(SIGTERM, end, this), g_unix_signal_add(SIGINT, end, this)};
  const int status = application_->run();
  for (const guint source : signals) g_source_remove(source);
  return status;
}

void GtkApplication::activate(ApplicationDelegate& delegate) {
  if (std::exchange(launched_, true)) {
    delegate.applicationShouldHandleReopen();
    return;
  }
  // The application has no window of its own that would keep it running.
  application_->hold();
  delegate.applicationDidFinishLaunching();
}

void GtkApplication::terminate() {
  // A dialog that waits for its answer would keep the process.
  for (Gtk::Window* const window : Gtk::Window::list_toplevels()) {
    if (auto* const dialog = dynamic_cast<Gtk::Dialog*>(window)) dialog->response(Gtk::RESPONSE_DELETE_EVENT);
  }
  onTerminate_();
  application_->quit();
}

void GtkApplication::offer(Command command) {
  std::visit(ActionAdder{*application_.operator->(), command.name}, command.perform);
}

}  // namespace tavelle
