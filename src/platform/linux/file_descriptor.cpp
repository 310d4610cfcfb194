#include "platform/linux/file_descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>
#include <system_error>

#include "base/text.h"

namespace tavelle {

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
  return {escapedUtf8(subject) + ": " + escapedUtf8(std::generic_category().message(number))};
}

}  // namespace tavelle
