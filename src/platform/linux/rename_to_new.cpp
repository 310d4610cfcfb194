#include "platform/linux/rename_to_new.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "platform/linux/file_descriptor.h"

namespace tavelle {

Result<void> renameToNew(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return {};
  // What network file systems answer that do not know the flag.
  const bool flagUnknown = errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP;
  if (!flagUnknown) return systemError(to.native(), errno);
  if (isTaken(to)) return systemError(to.native(), EEXIST);
  if (rename(from.c_str(), to.c_str()) != 0) return systemError(to.native(), errno);
  return {};
}

bool isTaken(const std::filesystem::path& path) {
  std::error_code code;
  return std::filesystem::symlink_status(path, code).type() != std::filesystem::file_type::not_found;
}

}  // namespace tavelle
