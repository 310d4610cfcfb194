#include "platform/linux/mime_file_types.h"

#include <gio/gio.h>

#include <string>

#include "base/text.h"
#include "platform/linux/handles.h"

namespace tavelle {

FileType MimeFileTypes::ofExtension(std::string_view extension) const {
  if (!isUtf8(extension)) return FileType::other;
  const std::string name = "file." + std::string(extension);
  const GCharPtr guessed(g_content_type_guess(name.c_str(), nullptr, 0, nullptr));
  for (const FileType type : {FileType::webPage, FileType::video, FileType::image}) {
    for (const char* const mimeType : mimeTypesOf(type)) {
      if (g_content_type_is_a(guessed.get(), mimeType)) return type;
    }
  }
  return FileType::other;
}

std::vector<const char*> mimeTypesOf(FileType type) {
  switch (type) {
    case FileType::webPage:
      return {"text/html", "application/xhtml+xml"};
    case FileType::video:
      // Two kinds of video are filed elsewhere. And what broadcasts are recorded in shares its extension "ts" with a
      // format of translators, whose files nobody wants as a wallpaper.
      return {"video/*", "application/mxf", "application/vnd.ms-asf", "text/vnd.trolltech.linguist"};
    case FileType::image:
      return {"image/*"};
    case FileType::other:
      return {};
  }
  return {};
}

}  // namespace tavelle
