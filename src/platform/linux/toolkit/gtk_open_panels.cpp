#include "platform/linux/toolkit/gtk_open_panels.h"

#include <gtkmm/filechooserdialog.h>
#include <gtkmm/filechoosernative.h>
#include <gtkmm/filefilter.h>
#include <gtkmm/label.h>

#include "platform/linux/mime_file_types.h"

namespace tavelle {
namespace {

/// Only GTK's own dialog can be reached; the portal's belongs to another process.
void bringToFront() {
  for (Gtk::Window* const window : Gtk::Window::list_toplevels()) {
    if (auto* const dialog = dynamic_cast<Gtk::FileChooserDialog*>(window)) dialog->present();
  }
}

}  // namespace

std::vector<std::filesystem::path> GtkOpenPanels::run(const OpenPanel& panel) {
  if (ended_) return {};
  if (waiting_) {
    bringToFront();
    return {};
  }
  const auto chooser =
      Gtk::FileChooserNative::create(panel.title, Gtk::FILE_CHOOSER_ACTION_OPEN, panel.prompt, "Cancel");
  Gtk::Label message(panel.message);
  chooser->set_extra_widget(message);
  message.show();
  chooser->set_select_multiple(panel.allowsMultipleSelection);
  const auto filter = Gtk::FileFilter::create();
  filter->set_name("Wallpapers");
  for (const FileType type : panel.allowedTypes) {
    for (const char* const mimeType : mimeTypesOf(type)) filter->add_mime_type(mimeType);
  }
  chooser->add_filter(filter);
  // Not the chooser's own way of waiting: that ends early only by hiding it, which brings GTK down while the portal is
  // being called.
  int answer = Gtk::RESPONSE_CANCEL;
  sigc::connection answered = chooser->signal_response().connect([&](int response) {
    answer = response;
    waiting_->quit();
  });
  waiting_ = Glib::MainLoop::create();
  chooser->show();
  waiting_->run();
  waiting_.reset();
  answered.disconnect();
  if (answer != Gtk::RESPONSE_ACCEPT) return {};
  std::vector<std::filesystem::path> chosen;
  for (const std::string& file : chooser->get_filenames()) chosen.emplace_back(file);
  return chosen;
}

void GtkOpenPanels::end() {
  ended_ = true;
  if (waiting_) waiting_->quit();
}

}  // namespace tavelle
