#pragma once

#include <plist/plist.h>

#include <filesystem>
#include <functional>
#include <string>

#include "base/property_list.h"
#include "base/result.h"

namespace tavelle {

class Clock;
class Files;
class Processes;

/// The file in the user's home folder that says which picture every display shows on every workspace.
std::filesystem::path wallpaperStore(const std::filesystem::path& home);

/// The wallpaper store, which the application, its command line and the agent change at any time. Nothing else in the
/// program touches the file. Any thread.
class WallpaperStore {
 public:
  enum class IfMissing { fail, make };
  /// Changes the store's dictionary; whether there is anything to write. Called once, or not at all when the store
  /// can't be read. It must not wait for anybody: others may be waiting for it.
  using Edit = std::function<bool(plist_t root)>;

  /// `file`: see `wallpaperStore`. `files` outlives this.
  WallpaperStore(Files& files, std::filesystem::path file) : files_(files), file_(std::move(file)) {}

  /// Reads the store, has it edited and writes it, under a lock on its folder, so that no change of another's in
  /// between is lost. Waits for those as long as `Files::lock` does; where that gives none it goes on all the same, and
  /// can lose one. A store that is missing is an error, or an empty one, made along with its folder. The file is either
  /// as before or as after, whatever happens, and never one that could not be read again: that would be worse than one
  /// that shows another picture.
  Result<void> change(IfMissing ifMissing, const Edit& edit);

  /// Keeps a copy of the store beside it, once and for all: later ones change nothing. It is worth having, but nothing
  /// to fail for. For an edit, before the change.
  void keepBackup();

 private:
  Result<PlistPtr> read(IfMissing ifMissing) const;
  Result<void> write(plist_t root);

  Files& files_;
  const std::filesystem::path file_;
};

/// What the sync needs from outside. The services outlive it.
struct StoreServices {
  Clock& clock;
  Files& files;
  Processes& processes;
  /// See `wallpaperStore`.
  std::filesystem::path store;
};

/// Makes the still image the picture of every display on every workspace, in the store, and has the agent that applies
/// the store start again. `still` is absolute; it need not exist. Gives `log` one line for what happened, unless all
/// was as it should be. Whether the store was changed. Blocks.
bool syncAllSpaces(const std::filesystem::path& still, const StoreServices& services,
                   const std::function<void(const std::string&)>& log);

}  // namespace tavelle
