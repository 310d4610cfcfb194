#include "platform/linux/file_descriptor.h"

#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "app/text.h"

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

Error systemError(std::string_view subject, int number) {
  return {escapedUtf8(subject) + ": " + escapedUtf8(std::generic_category().message(number))};
}

}  // namespace tavelle
