#pragma once

#include "platform/files.h"

namespace tavelle {

/// The file system. GIO lists, tells creation times and knows the trash; the kernel is asked for what has to survive a
/// crash.
class LinuxFiles final : public Files {
 public:
  Result<std::vector<FileLocation>> list(const std::filesystem::path& folder, Hidden hidden) const override;
  bool exists(const std::filesystem::path& path) const override;
  std::optional<WallTime> created(const std::filesystem::path& path) const override;
  Result<void> createFolders(const std::filesystem::path& folder) override;
  Result<void> copy(const std::filesystem::path& from, const std::filesystem::path& to) override;
  Result<void> copyFile(const std::filesystem::path& from, const std::filesystem::path& to) override;
  void sweep(const std::filesystem::path& folder) override;
  Result<void> trash(const std::filesystem::path& path) override;
  Result<std::string> read(const std::filesystem::path& path) const override;
  Result<void> write(const std::filesystem::path& path, std::string_view bytes, Readers readers) override;
  Result<void> append(const std::filesystem::path& path, std::string_view bytes) override;
  Registration lock(const std::filesystem::path& folder) override;
};

}  // namespace tavelle
