#include "platform/linux/linux_files.h"

#include <fcntl.h>
#include <gio/gio.h>
#include <sys/file.h>

#include <cerrno>
#include <chrono>
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

/// Many times what a holder needs for its work on a busy disk.
constexpr auto longestLockWait = 2s;
constexpr auto lockCheckInterval = 5ms;

constexpr auto listedAttributes = G_FILE_ATTRIBUTE_STANDARD_NAME
    "," G_FILE_ATTRIBUTE_STANDARD_IS_HIDDEN "," G_FILE_ATTRIBUTE_TIME_CREATED "," G_FILE_ATTRIBUTE_TIME_CREATED_USEC;

Error errorAbout(const fs::path& path, const std::error_code& code) { return systemError(path.native(), code.value()); }

std::optional<WallTime> creationTime(GFileInfo* info) {
  // 0 is how a file system without creation times comes through.
  const auto seconds = g_file_info_get_attribute_uint64(info, G_FILE_ATTRIBUTE_TIME_CREATED);
  if (seconds == 0) return std::nullopt;
  return WallTime(std::chrono::seconds(seconds)) +
         std::chrono::microseconds(g_file_info_get_attribute_uint32(info, G_FILE_ATTRIBUTE_TIME_CREATED_USEC));
}

GObjectPtr<GFile> fileAt(const fs::path& path) { return adopt(g_file_new_for_path(path.c_str())); }

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
  std::string workshop = (to.parent_path() / ".tavelle.XXXXXX").native();
  if (!mkdtemp(workshop.data())) return systemError(to.native(), errno);
  const fs::path half = fs::path(workshop) / to.filename();
  std::error_code code;
  fs::copy(from, half, fs::copy_options::recursive | fs::copy_options::copy_symlinks, code);
  Result<void> result = code ? errorAbout(to, code) : renameToNew(half, to);
  std::error_code ignored;
  fs::remove_all(workshop, ignored);
  return result;
}

Result<void> LinuxFiles::copyFile(const fs::path& from, const fs::path& to) { return copyRegularFile(from, to); }

Result<void> LinuxFiles::trash(const fs::path& path) {
  ErrorSlot error;
  if (!g_file_trash(fileAt(path).get(), nullptr, error.out())) return Error{escapedUtf8(error.message())};
  return {};
}

Result<std::string> LinuxFiles::read(const fs::path& path) const { return readFile(path); }

Result<void> LinuxFiles::write(const fs::path& path, std::string_view bytes) { return writeAtomically(path, bytes); }

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
