#pragma once

#include <filesystem>
#include <optional>

#include "platform/status_item.h"

namespace tavelle {

/// Icons in the panel with GTK menus.
class GtkStatusItems final : public StatusItems {
 public:
  /// `icons` is a folder of icon themes that holds the program's own icons.
  explicit GtkStatusItems(std::optional<std::filesystem::path> icons);

  std::unique_ptr<StatusItem> make(std::function<void(MenuItems&)> menuNeedsUpdate) override;

 private:
  const std::optional<std::filesystem::path> icons_;
};

}  // namespace tavelle
