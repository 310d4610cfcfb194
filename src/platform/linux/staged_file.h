#pragma once

#include <filesystem>
#include <string>

#include "base/result.h"
#include "platform/linux/file_descriptor.h"

namespace tavelle {

/// A file that is being made and appears in its place in one step, when all of it is on the disk. Until then it has no
/// name, so that nothing is left of it when the process is killed or the power fails. On file systems that know no
/// files without a name, such as NFS and FAT, a hidden one beside the target would be left then.
class StagedFile {
 public:
  /// Empty, with its owner as the only one who may read it. The folder of `target` must exist.
  static Result<StagedFile> make(std::filesystem::path target);
  StagedFile(StagedFile&& other) noexcept;
  StagedFile& operator=(StagedFile&&) = delete;
  StagedFile(const StagedFile&) = delete;
  StagedFile& operator=(const StagedFile&) = delete;
  /// What has not been put in its place is gone.
  ~StagedFile();

  const FileDescriptor& descriptor() const { return descriptor_; }

  /// Puts the file in its place; fails when something is there already.
  Result<void> commitNew() &&;
  /// Puts the file in its place and in that of the file that is there.
  Result<void> commitReplacing() &&;

 private:
  StagedFile(std::filesystem::path target, FileDescriptor descriptor, std::string hiddenName);

  Result<void> giveHiddenName();

  std::filesystem::path target_;
  FileDescriptor descriptor_;
  /// The path that it has for the time being; empty while it has none.
  std::string hidden_;
};

}  // namespace tavelle
