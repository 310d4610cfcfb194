#pragma once

#include <filesystem>
#include <optional>

#include "platform/status_item.h"

namespace tavelle {

/// Icons in the panel with GTK menus.
class GtkStatusItems final : public StatusItems {
 public:
  /// `resources` is the folder of the files that come with the program, its icons among them.
  explicit GtkStatusItems(const std::optional<std::filesystem::path>& resources);

  std::unique_ptr<StatusItem> make(std::function<void(MenuItems&)> menuNeedsUpdate) override;

 private:
  const std::optional<std::filesystem::path> icons_;
};

}  // namespace tavelle
