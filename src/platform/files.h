#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/registration.h"
#include "base/result.h"
#include "base/wall_time.h"

namespace tavelle {

/// Where a file or folder is. One that comes from a listing carries the creation time that the listing fetched along
/// with it, so that sorting a library by age asks the file system nothing more.
struct FileLocation {
  std::filesystem::path path;
  std::optional<WallTime> created = std::nullopt;
};

/// The file system. Paths are absolute and hold whatever bytes the file system holds. Every call blocks. Any thread.
class Files {
 public:
  enum class Hidden { include, skip };
  /// Who may read a file that is new: whomever the user's umask lets, or the user alone.
  enum class Readers { asUsual, owner };

  virtual ~Files() = default;

  /// The immediate entries of `folder`, in no particular order, each with its creation time where the file system
  /// reports one. Hidden entries are those whose names begin with a full stop and those that the file system flags.
  virtual Result<std::vector<FileLocation>> list(const std::filesystem::path& folder, Hidden hidden) const = 0;

  /// Whether anything exists at `path`, symbolic links followed.
  virtual bool exists(const std::filesystem::path& path) const = 0;

  /// When the object at `path` was created; nothing when it cannot be read or is not reported.
  virtual std::optional<WallTime> created(const std::filesystem::path& path) const = 0;

  /// Makes `folder` and whatever is missing above it. A folder that exists already is a success.
  virtual Result<void> createFolders(const std::filesystem::path& folder) = 0;

  /// Copies a file, or a folder with all it holds. Fails when `to` exists. `to` comes into being only when all of the
  /// copy is on the disk: after a failure, or a crash half way, there is no half copy under that name. What could only
  /// be read can be written in the copy.
  virtual Result<void> copy(const std::filesystem::path& from, const std::filesystem::path& to) = 0;

  /// Copies the content of the regular file `from`, symbolic links followed. Fails when `to` exists. `to` comes into
  /// being only when all of the copy is on the disk. Anything else in the place of a file is an error, never a wait.
  virtual Result<void> copyFile(const std::filesystem::path& from, const std::filesystem::path& to) = 0;

  /// Removes from `folder` what is left of copies into it that never came to their end, since the process was killed or
  /// the power failed. What cannot be removed stays.
  virtual void sweep(const std::filesystem::path& folder) = 0;

  /// Moves the file or folder to the user's trash, from where it can be put back.
  virtual Result<void> trash(const std::filesystem::path& path) = 0;

  /// The whole content of a regular file. Nothing there is an error of the kind `notFound`; anything else in its place
  /// is an error, never a wait.
  virtual Result<std::string> read(const std::filesystem::path& path) const = 0;

  /// Makes `bytes` the whole content of the file `path`, in one step that survives a crash or a power cut half way:
  /// then the file is either as before or as after. The folder must exist. A file that existed keeps its permissions.
  virtual Result<void> write(const std::filesystem::path& path, std::string_view bytes, Readers readers) = 0;

  /// Adds `bytes` at the end of the file `path`, which is made when it does not exist; folders are not. What the file
  /// held before stays, whatever happens.
  virtual Result<void> append(const std::filesystem::path& path, std::string_view bytes) = 0;

  /// Keeps whoever else locks the same folder waiting, in this process or another, until the handle is dropped or this
  /// process ends, however it does. It keeps nobody from doing anything else, leaves nothing in the folder and needs no
  /// right to write there. Waits for the one who holds the lock, but not for one who hangs: two seconds. After that,
  /// and when the folder is missing, can't be read or lies where there are no locks, nothing is held and nobody is kept
  /// waiting. In a folder of another machine's the lock holds between the processes of this one.
  virtual Registration lock(const std::filesystem::path& folder) = 0;
};

}  // namespace tavelle
