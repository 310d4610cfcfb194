#pragma once

#include <filesystem>
#include <optional>

#include "platform/status_item.h"

namespace tavelle {

class Monitors;

/// Icons in the panel with GTK menus.
class GtkStatusItems final : public StatusItems {
 public:
  /// `icons` is a folder of icon themes that holds the program's own icons. Menus open on the `monitors`, which outlive
  /// this and all items.
  GtkStatusItems(std::optional<std::filesystem::path> icons, const Monitors& monitors);

  std::unique_ptr<StatusItem> make(std::function<void(MenuItems&)> menuNeedsUpdate) override;

 private:
  const std::optional<std::filesystem::path> icons_;
  const Monitors& monitors_;
};

}  // namespace tavelle
