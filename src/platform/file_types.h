#pragma once

#include <string_view>

namespace tavelle {

/// What a wallpaper can be made of.
enum class FileType { webPage, video, image, other };

/// What files are, by their names. Any thread.
class FileTypes {
 public:
  virtual ~FileTypes() = default;

  /// The type of files whose names end in this extension, given without its full stop. An extension that is unknown,
  /// empty or not UTF-8 is of the type `other`. No file is looked at.
  virtual FileType ofExtension(std::string_view extension) const = 0;
};

}  // namespace tavelle
