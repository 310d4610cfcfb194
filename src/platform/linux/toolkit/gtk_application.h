#pragma once

#include <gtkmm/application.h>

#include "platform/application.h"

namespace tavelle {

/// The application on GTK and the session bus. Without a session bus it runs all the same, but a second one can, too.
class GtkApplication final : public Application {
 public:
  /// `id` is its name on the session bus. `onTerminate` ends whatever would keep the event loop waiting, or would
  /// come to do so; dialogs that are open are closed without it.
  explicit GtkApplication(
      const char* id, std::function<void()> onTerminate = [] {});

  int run(ApplicationDelegate& delegate, const std::vector<std::string>& arguments) override;
  void terminate() override;
  void offer(Command command) override;

 private:
  void activate(ApplicationDelegate& delegate);
  void launch();
  void later(const std::function<void()>& perform);
  void awaitActivation();

  Glib::RefPtr<Gtk::Application> application_;
  const std::function<void()> onTerminate_;
  bool launched_ = false;
};

}  // namespace tavelle
