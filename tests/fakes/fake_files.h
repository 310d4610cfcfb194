#pragma once

#include <map>
#include <set>
#include <string>

#include "platform/files.h"

namespace tavelle {

/// A file system in memory. Missing parents are errors, as on a disk. Folders are made in the order of a clock that
/// moves a second with each object.
class FakeFiles final : public Files {
 public:
  Result<std::vector<FileLocation>> list(const std::filesystem::path& folder, Hidden hidden) const override;
  bool exists(const std::filesystem::path& path) const override { return objects_.contains(path); }
  std::optional<WallTime> created(const std::filesystem::path& path) const override;
  Result<void> createFolders(const std::filesystem::path& folder) override;
  Result<void> copy(const std::filesystem::path& from, const std::filesystem::path& to) override;
  Result<void> copyFile(const std::filesystem::path& from, const std::filesystem::path& to) override;
  Result<void> trash(const std::filesystem::path& path) override { return remove(path), Result<void>(); }
  Result<std::string> read(const std::filesystem::path& path) const override;
  void sweep(const std::filesystem::path& /*folder*/) override {}
  Result<void> write(const std::filesystem::path& path, std::string_view bytes, Readers readers) override;
  Result<void> append(const std::filesystem::path& path, std::string_view bytes) override;
  /// Nobody else sees it.
  Registration lock(const std::filesystem::path& /*folder*/) override { return {}; }

  /// Puts an object there with all that is missing above it, whatever is broken.
  void put(const std::filesystem::path& path, std::string content = {});
  void remove(const std::filesystem::path& path);
  std::optional<std::string> content(const std::filesystem::path& path) const;

  /// Objects that nothing can be written to or below.
  std::set<std::filesystem::path> full;

 private:
  struct Object {
    bool folder = false;
    std::string content;
    WallTime created;
  };
  Result<void> make(const std::filesystem::path& path, Object object);
  bool isFolder(const std::filesystem::path& path) const { return exists(path) && objects_.at(path).folder; }
  bool isFull(const std::filesystem::path& path) const;

  std::map<std::filesystem::path, Object> objects_{{"/", {true, {}, {}}}};
  WallTime now_{std::chrono::hours(24)};
};

}  // namespace tavelle
