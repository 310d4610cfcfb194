#pragma once

#include "platform/alerts.h"

namespace tavelle {

/// GTK's message dialogs.
class GtkAlerts final : public Alerts {
 public:
  std::optional<std::size_t> run(const Alert& alert) override;
};

}  // namespace tavelle
