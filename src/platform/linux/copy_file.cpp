#include "platform/linux/copy_file.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>
#include <string_view>

#include "base/text.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/staged_file.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;

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
  // Whoever may not write the source can do as they like with a copy of their own.
  if (fchmod(copy.get(), (before.st_mode & 0777U) | S_IRUSR | S_IWUSR) != 0) return systemError("copy", errno);
  return {};
}

}  // namespace

Result<void> copyRegularFile(const fs::path& from, const fs::path& to) {
  // Not blocking: a FIFO in the file's place gives an error and not a process that hangs.
  const FileDescriptor source(open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat info {};
  if (!source || fstat(source.get(), &info) != 0) return systemError(from.native(), errno);
  if (!S_ISREG(info.st_mode)) return Error{escapedUtf8(from.native()) + ": not a file"};

  auto copy = StagedFile::make(to);
  if (!copy) return copy.error();
  if (const auto filled = fill(copy->descriptor(), source, info); !filled) {
    return Error{escapedUtf8(to.native()) + ": " + filled.error().description};
  }
  return std::move(copy).value().commitNew();
}

}  // namespace tavelle
