#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include "base/result.h"

namespace tavelle {

/// An open file of the kernel's; closed when this dies.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor();

  explicit operator bool() const { return descriptor_ >= 0; }
  int get() const { return descriptor_; }

  /// Writes all of `bytes`, however many calls of the kernel's that takes.
  Result<void> writeAll(std::string_view bytes) const;

 private:
  int descriptor_ = -1;
};

/// The whole content of a regular file; anything else in its place is an error, never a wait.
Result<std::string> readFile(const std::filesystem::path& path);

/// What `errno`, given as `number`, says about `subject`: "subject: No space left on device"; of the kind `notFound`
/// where that is what it says.
Error systemError(std::string_view subject, int number);

/// Moves `from` to `to` on the same file system, in one step; fails when `to` exists. On file systems that cannot look
/// and move in one step, one that appears in between may be replaced.
Result<void> renameToNew(const std::filesystem::path& from, const std::filesystem::path& to);

/// Sees to it that the names in `folder` are on the disk, too, as far as its file system can.
void syncFolder(const std::filesystem::path& folder);

/// Whether `renameToNew` would fail because something is there already. Symbolic links are not followed.
bool isTaken(const std::filesystem::path& path);

/// A file that is being made and appears in its place in one step, when all of it is on the disk. Until then it has no
/// name, so that nothing is left of it when the process is killed or the power fails. On file systems that know no
/// files without a name, such as NFS and FAT, a hidden one beside the target would be left then.
class StagedFile {
 public:
  /// Empty, with these permissions less the user's umask. The folder of `target` must exist.
  static Result<StagedFile> make(std::filesystem::path target, mode_t permissions);
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

  std::filesystem::path target_;
  FileDescriptor descriptor_;
  /// The path that it has for the time being; empty while it has none.
  std::string hidden_;
};

/// Replaces the content of `file` in one step that survives a crash or a power cut half way: then the file is either
/// as before or as after. The folder must exist. A file that existed keeps its permissions; a new one gets
/// `permissions`, less the user's umask. A symbolic link is replaced itself, and what it leads to stays as it is.
Result<void> writeAtomically(const std::filesystem::path& file, std::string_view bytes, mode_t permissions);

/// Where `file` leads to when it is a symbolic link, as with somebody who keeps their settings elsewhere; else `file`.
std::filesystem::path behindLinks(const std::filesystem::path& file);

/// Copies the content of the regular file `from`, symbolic links followed, and its permissions less the user's umask;
/// the copy's owner may write it in any case. Where the file system can, both share their blocks, and the copy is done
/// at once whatever its size. Fails when `to` exists. `to` comes into being, in one step, when all of the copy is on
/// the disk.
Result<void> copyRegularFile(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace tavelle
