#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "base/property_list.h"
#include "base/result.h"
#include "platform/user_defaults.h"

namespace tavelle {

/// The settings in a property list file. Several processes may use the same file: each read looks whether another one
/// has changed it, each write changes only the keys that this process set.
class PlistDefaults final : public UserDefaults {
 public:
  /// Touches no file.
  explicit PlistDefaults(std::filesystem::path file) : file_(std::move(file)) {}

  std::optional<DefaultsValue> value(std::string_view key) const override;
  void set(std::string_view key, DefaultsValue value) override;
  void remove(std::string_view key) override;
  Registration onTrouble(std::function<void(const std::string&)> tell) override;

 private:
  enum class Content { good, damaged, unreadable };
  /// What tells one version of the file from another.
  struct Version {
    std::uint64_t inode = 0;
    std::int64_t size = -1;
    std::int64_t changedSeconds = 0;
    std::int64_t changedNanoseconds = 0;
    friend bool operator==(const Version&, const Version&) = default;
  };

  Version currentVersion() const;
  void refresh() const;
  void save();
  Result<void> trySave();
  Result<void> keepDamagedAside();
  void report(const std::string& trouble) const;

  std::filesystem::path file_;
  mutable Version version_;
  mutable Content content_ = Content::good;
  /// The file's dictionary as last read; none when there is none.
  mutable PlistPtr stored_;
  /// What was set here and is not in the file yet; nothing stands for a removed key.
  std::map<std::string, std::optional<DefaultsValue>, std::less<>> unsaved_;
  mutable std::string lastTrouble_;
  std::function<void(const std::string&)> tell_;
};

}  // namespace tavelle
