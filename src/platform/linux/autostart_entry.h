#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/login_item.h"

namespace tavelle {

/// The application's entry in the folders that a desktop session starts programs from, "tavelle.desktop", by the rules
/// for autostart that the desktops of freedesktop.org share (version 0.5).
///
/// Held for approval is an entry that a desktop's own key switches off, such as `X-GNOME-Autostart-enabled`, or that is
/// not meant for the running desktop (`OnlyShowIn`, `NotShowIn`). Registering switches those keys on, since the user
/// asks for it, but leaves the choice of desktops as it is. An entry of the system's is never changed, but hidden or
/// overruled by one of the user's.
class AutostartEntry final : public LoginItem {
 public:
  /// `folders` as from `autostartFolders`; `executable` is what is to be started.
  AutostartEntry(const std::vector<std::filesystem::path>& folders, std::filesystem::path executable);

  LoginItemStatus status() const override;
  Result<void> registerApplication() override;
  Result<void> unregister() override;

 private:
  std::optional<std::filesystem::path> inForce() const;
  bool startsUs(const std::string& commandLine) const;
  Result<std::string> fresh() const;
  Result<void> write(const std::string& entry) const;

  /// The entry that counts stands in the first of these that exists. Only the first is ever written.
  std::vector<std::filesystem::path> files_;
  const std::filesystem::path executable_;
};

}  // namespace tavelle
