#include "desktop_picture/wallpaper_store.h"

#include <optional>
#include <string>

#include "base/file_uri.h"
#include "base/registration.h"
#include "base/text.h"
#include "desktop_picture/store_entries.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/processes.h"

namespace tavelle {
namespace {

constexpr auto unreadable = "desktops: couldn't read the wallpaper store";

/// The path's last name, as text, whether or not a separator follows it.
std::string lastName(const std::filesystem::path& path) {
  return escapedUtf8((path.has_filename() ? path : path.parent_path()).filename().native());
}

}  // namespace

std::filesystem::path wallpaperStore(const std::filesystem::path& home) {
  return home / "Library/Application Support/com.apple.wallpaper/Store/Index.plist";
}

Result<void> WallpaperStore::change(IfMissing ifMissing, const Edit& edit) {
  // Before the lock, which is one on the folder. When it can't be made, the writing says so.
  if (ifMissing == IfMissing::make) static_cast<void>(files_.createFolders(file_.parent_path()));
  const Registration lock = files_.lock(file_.parent_path());
  const auto root = read(ifMissing);
  if (!root) return root.error();
  if (!edit(root->get())) return {};
  return write(root->get());
}

void WallpaperStore::keepBackup() {
  const auto backup = file_.parent_path() / "Index.before-tavelle.plist";
  if (!files_.exists(backup)) static_cast<void>(files_.copyFile(file_, backup));
}

Result<PlistPtr> WallpaperStore::read(IfMissing ifMissing) const {
  const auto bytes = files_.read(file_);
  if (!bytes && bytes.error().kind == Error::Kind::notFound && ifMissing == IfMissing::make) {
    return PlistPtr(plist_new_dict());
  }
  if (!bytes) return bytes.error();
  PlistPtr root = parsedDictionary(*bytes);
  if (!root) return Error{"the store is damaged"};
  return root;
}

Result<void> WallpaperStore::write(plist_t root) {
  const auto bytes = binaryPlist(root);
  if (!bytes) return bytes.error();
  // A content that is copied to a deeper place may nest too deeply there, and the library can write what it could not
  // read.
  if (!parsedDictionary(*bytes)) return Error{"the store has something in it that can't be written"};
  return files_.write(file_, *bytes, Files::Readers::owner);
}

bool syncAllSpaces(const std::filesystem::path& still, const StoreServices& services,
                   const std::function<void(const std::string&)>& log) {
  WallpaperStore store(services.files, services.store);
  std::optional<Result<bool>> changed;
  const auto written = store.change(WallpaperStore::IfMissing::fail, [&](plist_t root) {
    changed = setImageEverywhere(root, fileUri(still), services.clock.now());
    if (!*changed || !**changed) return false;
    store.keepBackup();
    return true;
  });
  if (!changed) {
    log(unreadable);
    return false;
  }
  if (!*changed || !written) {
    const Error& error = *changed ? written.error() : changed->error();
    log("desktops: couldn't update the wallpaper store: " + error.description);
    return false;
  }
  if (!**changed) return false;
  // Without an agent there is nothing to restart, and no harm.
  static_cast<void>(services.processes.run("/usr/bin/killall", {"WallpaperAgent"}));
  log("desktops: every Space now shows " + lastName(still));
  return true;
}

}  // namespace tavelle
