#include "platform/linux/toolkit/gtk_application.h"

#include <glib-unix.h>
#include <glibmm/main.h>
#include <gtkmm/dialog.h>

#include <array>
#include <chrono>
#include <csignal>
#include <utility>

namespace tavelle {
namespace {

/// The word in the service file that the session bus starts the program by.
constexpr auto startedByBus = "--gapplication-service";

/// How long a program that the bus has started waits to be told what for.
constexpr std::chrono::milliseconds patience{1000};

using Later = std::function<void(const std::function<void()>&)>;

/// Adds a command to the application's actions, by the type of its argument.
struct ActionAdder {
  Gtk::Application& application;
  const std::string& name;
  const Later later;

  void operator()(const std::function<void()>& perform) const {
    application.add_action(name, [later = later, perform] { later(perform); });
  }

  template <typename Argument>
  void operator()(const std::function<void(Argument)>& perform) const {
    using Value = std::decay_t<Argument>;
    application.add_action_with_parameter(
        name, Glib::Variant<Value>::variant_type(), [later = later, perform](const Glib::VariantBase& argument) {
          const auto value = Glib::VariantBase::cast_dynamic<Glib::Variant<Value>>(argument).get();
          later([perform, value] { perform(value); });
        });
  }

  void operator()(const std::function<void(const std::string&)>& perform) const {
    application.add_action_with_parameter(
        name, Glib::Variant<Glib::ustring>::variant_type(),
        [later = later, perform](const Glib::VariantBase& argument) {
          const auto value = Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::ustring>>(argument).get().raw();
          later([perform, value] { perform(value); });
        });
  }
};

}  // namespace

GtkApplication::GtkApplication(const char* id, std::function<void()> onTerminate)
    : application_(Gtk::Application::create(id)), onTerminate_(std::move(onTerminate)) {}

int GtkApplication::run(ApplicationDelegate& delegate, const std::vector<std::string>& arguments) {
  application_->signal_activate().connect([this, &delegate] { activate(delegate); });
  if (!arguments.empty() && arguments.front() == startedByBus) awaitActivation();
  const auto end = [](gpointer self) -> gboolean {
    static_cast<GtkApplication*>(self)->terminate();
    return G_SOURCE_CONTINUE;
  };
  const std::array signals{g_unix_signal_add(SIGTERM, end, this), g_unix_signal_add(SIGINT, end, this)};
  const int status = application_->run();
  for (const guint source : signals) g_source_remove(source);
  return status;
}

/// What the bus has started the program for comes as a message, be it an activation like the one that any other start
/// makes by itself: with both, the first start would look like a second one.
void GtkApplication::awaitActivation() {
  application_->set_flags(Gio::APPLICATION_IS_SERVICE);
  Glib::signal_timeout().connect_once([this] { launch(); }, static_cast<unsigned>(patience.count()));
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

void GtkApplication::launch() {
  if (!launched_) application_->activate();
}

/// What a command does comes a little after the call: it may ask the user something, and whoever has called must not
/// wait for that. A command may be what the bus has started the program for.
void GtkApplication::later(const std::function<void()>& perform) {
  Glib::signal_idle().connect_once([this, perform] {
    launch();
    perform();
  });
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
  std::visit(ActionAdder{*application_.operator->(), command.name, [this](const auto& perform) { later(perform); }},
             command.perform);
}

}  // namespace tavelle
