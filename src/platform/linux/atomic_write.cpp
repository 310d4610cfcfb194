#include "platform/linux/atomic_write.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/linux/file_descriptor.h"

namespace tavelle {
namespace {

Result<void> fill(const FileDescriptor& descriptor, const std::filesystem::path& file, std::string_view bytes) {
  struct stat before {};
  const mode_t mode = stat(file.c_str(), &before) == 0 ? before.st_mode & 07777 : 0600;
  if (fchmod(descriptor.get(), mode) != 0) return systemError(file.native(), errno);
  if (auto written = descriptor.writeAll(bytes); !written) return written;
  if (fsync(descriptor.get()) != 0) return systemError(file.native(), errno);
  return {};
}

}  // namespace

Result<void> writeAtomically(const std::filesystem::path& file, std::string_view bytes) {
  std::string temporary = (file.parent_path() / ("." + file.filename().native() + ".XXXXXX")).native();
  const FileDescriptor descriptor(mkostemp(temporary.data(), O_CLOEXEC));
  if (!descriptor) return systemError(file.native(), errno);

  Result<void> result = fill(descriptor, file, bytes);
  if (result && rename(temporary.c_str(), file.c_str()) != 0) result = systemError(file.native(), errno);
  if (!result) {
    unlink(temporary.c_str());
    return result;
  }
  // The new name itself is safe only when the folder is on the disk too.
  const FileDescriptor folder(open(file.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder) fsync(folder.get());
  return result;
}

}  // namespace tavelle
