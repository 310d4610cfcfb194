#pragma once

#include <glibmm/main.h>

#include "platform/open_panel.h"

namespace tavelle {

/// The portal's file dialog where GTK is to use the portal, else GTK's own.
class GtkOpenPanels final : public OpenPanels {
 public:
  std::vector<std::filesystem::path> run(const OpenPanel& panel) override;
  /// Closes the panel that is open, if any, as if the user had cancelled; from now on every one, before it is seen.
  void end();

 private:
  bool ended_ = false;
  /// Runs while a panel is open.
  Glib::RefPtr<Glib::MainLoop> waiting_;
};

}  // namespace tavelle
