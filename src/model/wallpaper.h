#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "base/wall_time.h"
#include "platform/files.h"

namespace tavelle {

class TextOrder;

/// One wallpaper: a folder that holds an index.html. Everything but the folder is read from the file system when it is
/// asked for. The folder may have gone meanwhile.
struct Wallpaper {
  FileLocation folder;

  /// The folder's own name, dots and all, as UTF-8; bytes of it that are none are shown escaped.
  std::string name() const;

  /// The page that plays. It may not exist.
  std::filesystem::path page() const;

  /// The picture that stands for the wallpaper where it does not move: the image in the folder that is named "still",
  /// else its first image by name; none when the folder holds no JPEG, PNG or HEIC, or cannot be read.
  std::optional<std::filesystem::path> still(const Files& files, const TextOrder& order) const;

  /// When the folder was created; the distant past when that cannot be told.
  WallTime added(const Files& files) const;

  /// Whether `other` is there and denotes the same folder. Symbolic links are not followed.
  bool same(const std::optional<Wallpaper>& other) const;
};

}  // namespace tavelle
