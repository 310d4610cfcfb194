#pragma once

#include "platform/alerts.h"

namespace tavelle {

/// GTK's message dialogs.
class GtkAlerts final : public Alerts {
 public:
  std::optional<std::size_t> run(const Alert& alert) override;
  /// From now on every alert is closed before it is seen.
  void end() { ended_ = true; }

 private:
  bool ended_ = false;
};

}  // namespace tavelle
