#include "platform/linux/staged_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "platform/linux/rename_to_new.h"

namespace tavelle {
namespace {

/// Gives a file without a name its first one, which must be free. Fails as system calls do.
int giveName(const FileDescriptor& descriptor, const std::filesystem::path& name) {
  // The way that open(2) shows; giving a descriptor itself would ask for a privilege.
  const std::string opened = "/proc/self/fd/" + std::to_string(descriptor.get());
  return linkat(AT_FDCWD, opened.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW);
}

}  // namespace

Result<StagedFile> StagedFile::make(std::filesystem::path target) {
  const auto folder = target.parent_path();
  FileDescriptor nameless(open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
  if (nameless) return StagedFile(std::move(target), std::move(nameless), "");
  // Not made of the target's name, which may be as long as names can be.
  std::string name = (folder / ".tavelle.XXXXXX").native();
  FileDescriptor named(mkostemp(name.data(), O_CLOEXEC));
  if (!named) return systemError(target.native(), errno);
  return StagedFile(std::move(target), std::move(named), std::move(name));
}

StagedFile::StagedFile(std::filesystem::path target, FileDescriptor descriptor, std::string hiddenName)
    : target_(std::move(target)), descriptor_(std::move(descriptor)), hidden_(std::move(hiddenName)) {}

StagedFile::StagedFile(StagedFile&& other) noexcept
    : target_(std::move(other.target_)),
      descriptor_(std::move(other.descriptor_)),
      hidden_(std::exchange(other.hidden_, {})) {}

StagedFile::~StagedFile() {
  if (!hidden_.empty()) unlink(hidden_.c_str());
}

Result<void> StagedFile::commitNew() && {
  if (fsync(descriptor_.get()) != 0) return systemError(target_.native(), errno);
  if (hidden_.empty()) {
    if (giveName(descriptor_, target_) != 0) return systemError(target_.native(), errno);
    return {};
  }
  auto moved = renameToNew(hidden_, target_);
  if (moved) hidden_.clear();
  return moved;
}

Result<void> StagedFile::commitReplacing() && {
  if (fsync(descriptor_.get()) != 0) return systemError(target_.native(), errno);
  // No call gives a file its first name where that is taken: it needs one to be moved from, for a moment.
  if (auto named = giveHiddenName(); !named) return named;
  if (rename(hidden_.c_str(), target_.c_str()) != 0) return systemError(target_.native(), errno);
  hidden_.clear();
  // The new name itself is safe only when the folder is on the disk too.
  const FileDescriptor folder(open(target_.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder) fsync(folder.get());
  return {};
}

Result<void> StagedFile::giveHiddenName() {
  for (int number = 0; hidden_.empty(); ++number) {
    const std::string name = ".tavelle." + std::to_string(getpid()) + "-" + std::to_string(number);
    const auto path = target_.parent_path() / name;
    if (giveName(descriptor_, path) == 0) {
      hidden_ = path.native();
    } else if (errno != EEXIST) {
      return systemError(target_.native(), errno);
    }
  }
  return {};
}

}  // namespace tavelle
