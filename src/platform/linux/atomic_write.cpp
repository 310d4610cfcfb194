#include "platform/linux/atomic_write.h"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include "platform/linux/file_descriptor.h"
#include "platform/linux/staged_file.h"

namespace tavelle {

Result<void> writeAtomically(const std::filesystem::path& file, std::string_view bytes) {
  struct stat before {};
  const mode_t mode = stat(file.c_str(), &before) == 0 ? before.st_mode & 07777 : 0600;
  auto staged = StagedFile::make(file);
  if (!staged) return staged.error();
  const FileDescriptor& descriptor = staged->descriptor();
  if (fchmod(descriptor.get(), mode) != 0) return systemError(file.native(), errno);
  if (auto written = descriptor.writeAll(bytes); !written) return written;
  return std::move(staged).value().commitReplacing();
}

std::filesystem::path behindLinks(const std::filesystem::path& file) {
  std::error_code code;
  auto real = std::filesystem::weakly_canonical(file, code);
  return code ? file : real;
}

}  // namespace tavelle
