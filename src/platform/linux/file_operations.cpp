#include "platform/linux/file_operations.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <system_error>

#include "base/text.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;

/// Gives a file without a name its first one, which must be free. Fails as system calls do.
int giveName(const FileDescriptor& descriptor, const fs::path& name) {
  // The way that open(2) shows; giving a descriptor itself would ask for a privilege.
  const std::string opened = "/proc/self/fd/" + std::to_string(descriptor.get());
  return linkat(AT_FDCWD, opened.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW);
}

/// Not so long that an interrupting signal would have to wait for it.
constexpr std::size_t stretch = 64UL << 20U;
constexpr std::size_t blockSize = 64UL << 10U;

/// What is between the two descriptors' places and the source's end, through this process: works everywhere.
Result<void> copyByHand(const FileDescriptor& from, const FileDescriptor& to) {
  std::array<char, blockSize> block{};
  while (true) {
    const ssize_t count = read(from.get(), block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return systemError("read", errno);
    if (count == 0) return {};
    if (auto written = to.writeAll({block.data(), static_cast<std::size_t>(count)}); !written) return written;
  }
}

Result<void> copyContent(const FileDescriptor& from, const FileDescriptor& to) {
  if (ioctl(to.get(), FICLONE, from.get()) == 0) return {};
  // Within the kernel, or on the file server. Whatever stops it is found again below, unless it is this call's own.
  while (copy_file_range(from.get(), nullptr, to.get(), nullptr, stretch, 0) > 0) {
  }
  return copyByHand(from, to);
}

Result<void> fill(const FileDescriptor& copy, const FileDescriptor& source, const struct stat& before) {
  if (auto copied = copyContent(source, copy); !copied) return copied;
  struct stat after {};
  if (fstat(copy.get(), &after) != 0) return systemError("copy", errno);
  if (after.st_size < before.st_size) return Error{"the file became shorter while it was copied"};
  return {};
}

/// A name beside `target` that nobody else gives. Not made of the target's, which may be as long as names can be.
fs::path hiddenName(const fs::path& target, int number) {
  return target.parent_path() / (".tavelle." + std::to_string(getpid()) + "-" + std::to_string(number));
}

}  // namespace

FileDescriptor::~FileDescriptor() {
  if (descriptor_ >= 0) close(descriptor_);
}

Result<void> FileDescriptor::writeAll(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return systemError("write", errno);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return {};
}

Result<std::string> readFile(const std::filesystem::path& path) {
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat info {};
  if (!file || fstat(file.get(), &info) != 0) return systemError(path.native(), errno);
  if (!S_ISREG(info.st_mode)) return Error{escapedUtf8(path.native()) + ": not a file"};
  std::string bytes;
  std::array<char, 4096> block{};
  while (true) {
    const ssize_t count = read(file.get(), block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return systemError(path.native(), errno);
    if (count == 0) return bytes;
    bytes.append(block.data(), static_cast<std::size_t>(count));
  }
}

Error systemError(std::string_view subject, int number) {
  return {.description = escapedUtf8(subject) + ": " + escapedUtf8(std::generic_category().message(number)),
          .kind = number == ENOENT || number == ENOTDIR ? Error::Kind::notFound : Error::Kind::other};
}

Result<void> renameToNew(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return {};
  // What network file systems answer that do not know the flag.
  const bool flagUnknown = errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP;
  if (!flagUnknown) return systemError(to.native(), errno);
  if (isTaken(to)) return systemError(to.native(), EEXIST);
  if (rename(from.c_str(), to.c_str()) != 0) return systemError(to.native(), errno);
  return {};
}

void syncFolder(const std::filesystem::path& folder) {
  const FileDescriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened) fsync(opened.get());
}

bool isTaken(const std::filesystem::path& path) {
  std::error_code code;
  return std::filesystem::symlink_status(path, code).type() != std::filesystem::file_type::not_found;
}

Result<StagedFile> StagedFile::make(std::filesystem::path target, mode_t permissions) {
  FileDescriptor nameless(open(target.parent_path().c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, permissions));
  if (nameless) return StagedFile(std::move(target), std::move(nameless), "");
  for (int number = 0;; ++number) {
    const auto name = hiddenName(target, number);
    FileDescriptor named(open(name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, permissions));
    if (named) return StagedFile(std::move(target), std::move(named), name.native());
    if (errno != EEXIST) return systemError(target.native(), errno);
  }
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
  } else {
    if (auto moved = renameToNew(hidden_, target_); !moved) return moved;
    hidden_.clear();
  }
  syncFolder(target_.parent_path());
  return {};
}

Result<void> StagedFile::commitReplacing() && {
  if (fsync(descriptor_.get()) != 0) return systemError(target_.native(), errno);
  // No call gives a file its first name where that is taken: it needs one to be moved from, for a moment.
  for (int number = 0; hidden_.empty(); ++number) {
    const auto name = hiddenName(target_, number);
    if (giveName(descriptor_, name) == 0) {
      hidden_ = name.native();
    } else if (errno != EEXIST) {
      return systemError(target_.native(), errno);
    }
  }
  if (rename(hidden_.c_str(), target_.c_str()) != 0) return systemError(target_.native(), errno);
  hidden_.clear();
  syncFolder(target_.parent_path());
  return {};
}

Result<void> writeAtomically(const std::filesystem::path& file, std::string_view bytes, mode_t permissions) {
  struct stat before {};
  const bool replaces = stat(file.c_str(), &before) == 0;
  auto staged = StagedFile::make(file, replaces ? 0600 : permissions);
  if (!staged) return staged.error();
  const FileDescriptor& descriptor = staged->descriptor();
  if (replaces && fchmod(descriptor.get(), before.st_mode & 07777) != 0) return systemError(file.native(), errno);
  if (auto written = descriptor.writeAll(bytes); !written) return written;
  return std::move(staged).value().commitReplacing();
}

std::filesystem::path behindLinks(const std::filesystem::path& file) {
  std::error_code code;
  auto real = std::filesystem::weakly_canonical(file, code);
  return code ? file : real;
}

Result<void> copyRegularFile(const fs::path& from, const fs::path& to) {
  // Not blocking: a FIFO in the file's place gives an error and not a process that hangs.
  const FileDescriptor source(open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat info {};
  if (!source || fstat(source.get(), &info) != 0) return systemError(from.native(), errno);
  if (!S_ISREG(info.st_mode)) return Error{escapedUtf8(from.native()) + ": not a file"};

  // Whoever may not write the source can do as they like with a copy of their own.
  auto copy = StagedFile::make(to, (info.st_mode & 0777U) | S_IRUSR | S_IWUSR);
  if (!copy) return copy.error();
  if (const auto filled = fill(copy->descriptor(), source, info); !filled) {
    return Error{escapedUtf8(to.native()) + ": " + filled.error().description};
  }
  return std::move(copy).value().commitNew();
}

}  // namespace tavelle
