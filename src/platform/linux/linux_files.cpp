#include "platform/linux/linux_files.h"

#include <fcntl.h>
#include <gio/gio.h>
#include <sys/file.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <system_error>
#include <thread>

#include "base/text.h"
#include "platform/linux/file_operations.h"
#include "platform/linux/handles.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// Of the folders in which copies are made; the last letters become others.
constexpr auto workshopName = ".tavelle-copy.XXXXXX";

/// Many times what a holder needs for its work on a busy disk.
constexpr auto longestLockWait = 2s;
constexpr auto lockCheckInterval = 5ms;

constexpr auto listedAttributes = G_FILE_ATTRIBUTE_STANDARD_NAME
    "," G_FILE_ATTRIBUTE_STANDARD_IS_HIDDEN "," G_FILE_ATTRIBUTE_TIME_CREATED "," G_FILE_ATTRIBUTE_TIME_CREATED_USEC;

Error errorAbout(const fs::path& path, const std::error_code& code) { return systemError(path.native(), code.value()); }

std::optional<WallTime> creationTime(GFileInfo* info) {
  // Before 1970 it is a negative number in an unsigned one's place.
  const std::chrono::seconds seconds(
      static_cast<std::int64_t>(g_file_info_get_attribute_uint64(info, G_FILE_ATTRIBUTE_TIME_CREATED)));
  // 0 is how a file system without creation times comes through; a damaged one tells of any time.
  constexpr auto furthest = std::chrono::floor<std::chrono::seconds>(WallTime::duration::max()) - 1s;
  if (seconds == 0s || seconds > furthest || seconds < -furthest) return std::nullopt;
  return WallTime(seconds) +
         std::chrono::microseconds(g_file_info_get_attribute_uint32(info, G_FILE_ATTRIBUTE_TIME_CREATED_USEC));
}

GObjectPtr<GFile> fileAt(const fs::path& path) { return adopt(g_file_new_for_path(path.c_str())); }

/// Copies a file, a link, or a folder with all that is in it; each is on the disk when it is done. Copies of folders
/// can be written to, whatever the originals can.
Result<void> copyTree(const fs::path& from, const fs::path& to) {
  std::error_code code;
  const auto type = fs::symlink_status(from, code).type();
  if (type == fs::file_type::symlink) {
    fs::copy_symlink(from, to, code);
  } else if (type != fs::file_type::directory) {
    return copyRegularFile(from, to);
  } else if (fs::create_directory(to, code)) {
    for (fs::directory_iterator each(from, code), end; !code && each != end; each.increment(code)) {
      if (auto copied = copyTree(each->path(), to / each->path().filename()); !copied) return copied;
    }
    syncFolder(to);
  }
  return code ? errorAbout(to, code) : Result<void>();
}

}  // namespace

Result<std::vector<FileLocation>> LinuxFiles::list(const fs::path& folder, Hidden hidden) const {
  ErrorSlot error;
  const auto enumerator = adopt(
      g_file_enumerate_children(fileAt(folder).get(), listedAttributes, G_FILE_QUERY_INFO_NONE, nullptr, error.out()));
  if (!enumerator) return Error{escapedUtf8(error.message())};
  std::vector<FileLocation> entries;
  while (const auto info = adopt(g_file_enumerator_next_file(enumerator.get(), nullptr, error.out()))) {
    if (hidden == Hidden::skip && g_file_info_get_is_hidden(info.get())) continue;
    entries.push_back({folder / g_file_info_get_name(info.get()), creationTime(info.get())});
  }
  if (error.get()) return Error{escapedUtf8(error.message())};
  return entries;
}

bool LinuxFiles::exists(const fs::path& path) const {
  std::error_code ignored;
  return fs::exists(path, ignored);
}

std::optional<WallTime> LinuxFiles::created(const fs::path& path) const {
  const auto info =
      adopt(g_file_query_info(fileAt(path).get(), listedAttributes, G_FILE_QUERY_INFO_NONE, nullptr, nullptr));
  return info ? creationTime(info.get()) : std::nullopt;
}

Result<void> LinuxFiles::createFolders(const fs::path& folder) {
  std::error_code code;
  fs::create_directories(folder, code);
  if (code) return errorAbout(folder, code);
  return {};
}

Result<void> LinuxFiles::copy(const fs::path& from, const fs::path& to) {
  // Copied into a folder of its own beside the target, under a hidden name that listings pass over, then moved into
  // place in one step. The name is not made of the target's, which may be as long as names can be.
  std::string workshop = to.parent_path() / workshopName;
  if (!mkdtemp(workshop.data())) return systemError(to.native(), errno);
  const Registration inUse = lock(workshop);
  const fs::path half = fs::path(workshop) / to.filename();
  Result<void> result = copyTree(from, half);
  if (result) result = renameToNew(half, to);
  if (result) syncFolder(to.parent_path());
  std::error_code ignored;
  fs::remove_all(workshop, ignored);
  return result;
}

void LinuxFiles::sweep(const fs::path& folder) {
  constexpr std::string_view name = workshopName;
  std::error_code code;
  std::vector<fs::path> found;
  for (fs::directory_iterator each(folder, code), end; !code && each != end; each.increment(code)) {
    const std::string other = each->path().filename();
    if (other.size() == name.size() && other.starts_with(name.substr(0, name.find('X')))) found.push_back(each->path());
  }
  for (const auto& workshop : found) {
    const FileDescriptor opened(open(workshop.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (opened && flock(opened.get(), LOCK_EX | LOCK_NB) == 0) fs::remove_all(workshop, code);
  }
}

Result<void> LinuxFiles::copyFile(const fs::path& from, const fs::path& to) { return copyRegularFile(from, to); }

Result<void> LinuxFiles::trash(const fs::path& path) {
  ErrorSlot error;
  if (!g_file_trash(fileAt(path).get(), nullptr, error.out())) return Error{escapedUtf8(error.message())};
  return {};
}

Result<std::string> LinuxFiles::read(const fs::path& path) const { return readFile(path); }

Result<void> LinuxFiles::write(const fs::path& path, std::string_view bytes, Readers readers) {
  return writeAtomically(path, bytes, readers == Readers::owner ? 0600 : 0666);
}

Result<void> LinuxFiles::append(const fs::path& path, std::string_view bytes) {
  // Not blocking, so that a FIFO in the file's place gives an error and not a process that hangs.
  const FileDescriptor file(
      open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666));
  if (!file) return systemError(path.native(), errno);
  return file.writeAll(bytes);
}

Registration LinuxFiles::lock(const fs::path& folder) {
  auto descriptor = std::make_shared<FileDescriptor>(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const auto end = std::chrono::steady_clock::now() + longestLockWait;
  // Asked for again and again: the call that waits knows no end.
  while (flock(descriptor->get(), LOCK_EX | LOCK_NB) != 0) {
    if ((errno != EWOULDBLOCK && errno != EINTR) || std::chrono::steady_clock::now() >= end) return {};
    std::this_thread::sleep_for(lockCheckInterval);
  }
  return Registration([descriptor]() mutable { descriptor.reset(); });
}

}  // namespace tavelle
